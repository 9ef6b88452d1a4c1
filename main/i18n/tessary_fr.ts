<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr_CA">
<context>
    <name>tessary::Export</name>
    <message>
        <location filename="../format/Export.cpp" line="82"/>
        <source>Cannot write &quot;%1&quot;: %2</source>
        <translation>Impossible d’écrire « %1 » : %2</translation>
    </message>
</context>
<context>
    <name>tessary::Notices</name>
    <message>
        <location filename="../window/NoticeText.cpp" line="33"/>
        <source>Accounts row %1</source>
        <translation>La ligne %1 des comptes</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="34"/>
        <source>Classes row %1</source>
        <translation>La ligne %1 des catégories</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="36"/>
        <source>Accounts row %1 (&quot;%2&quot;)</source>
        <translation>La ligne %1 des comptes (« %2 »)</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="37"/>
        <source>Classes row %1 (&quot;%2&quot;)</source>
        <translation>La ligne %1 des catégories (« %2 »)</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="46"/>
        <source>The class targets total %1%, not 100%.</source>
        <translation>Les cibles des catégories totalisent %1 %, et non 100 %.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="49"/>
        <source>The equity classes total 100%: the other classes divide by zero.</source>
        <translation>Les catégories d’actions totalisent 100 % : les autres catégories divisent par zéro.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="52"/>
        <source>%1 meant for equities could not be placed in any account: the result holds less equity than the targets ask.</source>
        <translation>%1 destinés aux actions n’ont pu être placés dans aucun compte : le résultat contient moins d’actions que les cibles ne le demandent.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="58"/>
        <source>Accounts row %1 has no account type; Calculate drops it.</source>
        <translation>La ligne %1 des comptes n’a pas de type de compte ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="61"/>
        <source>Accounts row %1 (&quot;%2&quot;) has no account type; Calculate drops it.</source>
        <translation>La ligne %1 des comptes (« %2 ») n’a pas de type de compte ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="67"/>
        <source>Classes row %1 has no asset class; Calculate drops it.</source>
        <translation>La ligne %1 des catégories n’a pas de catégorie d’actif ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="70"/>
        <source>Classes row %1 (&quot;%2&quot;) has no asset class; Calculate drops it.</source>
        <translation>La ligne %1 des catégories (« %2 ») n’a pas de catégorie d’actif ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="75"/>
        <source>%1 accounts are of type &quot;%2&quot;: the result shows only one of them.</source>
        <translation>%1 comptes sont du type « %2 » : le résultat n’en montre qu’un.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="80"/>
        <source>From result row %1 on, the class names do not belong to their values: a class row without a class was removed.</source>
        <translation>À partir de la ligne %1 du résultat, les noms des catégories ne correspondent pas à leurs valeurs : une ligne sans catégorie a été supprimée.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="85"/>
        <source>The result has no finite targets (the equity classes may total 100%): no trades.</source>
        <translation>Le résultat n’a pas de cibles finies (les catégories d’actions totalisent peut-être 100 %) : aucune opération.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="89"/>
        <source>The plan has no money for &quot;%1&quot;, which holds %2.</source>
        <translation>Le plan ne prévoit aucun montant pour « %1 », qui détient %2.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="92"/>
        <source>&quot;%1&quot; is held (%2) but the plan does not target it.</source>
        <translation>« %1 » est détenue (%2), mais le plan ne la vise pas.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="96"/>
        <source>&quot;%1&quot; needs %2 more cash to reach its targets without selling.</source>
        <translation>« %1 » a besoin de %2 de liquidités de plus pour atteindre ses cibles sans vendre.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="100"/>
        <source>%1 holds a negative amount, %2.</source>
        <translation>%1 contient un montant négatif, %2.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="103"/>
        <source>%1 holds %2, more than a portfolio plausibly holds.</source>
        <translation>%1 contient %2, plus qu’un portefeuille ne contient vraisemblablement.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="107"/>
        <source>%1 has a negative target, %2%.</source>
        <translation>%1 a une cible négative, %2 %.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="116"/>
        <source>%1, column %2: &quot;%3&quot; is not a number; it counts as 0.</source>
        <translation>%1, colonne %2 : « %3 » n’est pas un nombre ; il compte pour 0.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="121"/>
        <source>%1 has an unknown account type (%2); Calculate drops it.</source>
        <translation>%1 a un type de compte inconnu (%2) ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="126"/>
        <source>%1 has an unknown asset class (%2); Calculate drops it.</source>
        <translation>%1 a une catégorie d’actif inconnue (%2) ; Calculer la supprime.</translation>
    </message>
</context>
<context>
    <name>tessary::Report</name>
    <message>
        <location filename="../report/Report.cpp" line="84"/>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="333"/>
        <location filename="../report/Report.cpp" line="415"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="336"/>
        <source>Accounts</source>
        <translation>Comptes</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="337"/>
        <source>Targets</source>
        <translation>Cibles</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="342"/>
        <source>Allocation</source>
        <translation>Répartition</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="347"/>
        <source>Amounts by account type</source>
        <translation>Montants par type de compte</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="258"/>
        <source>Prepared with Tessary</source>
        <translation>Préparé avec Tessary</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="392"/>
        <source>The report cannot be painted on this device.</source>
        <translation>Le rapport ne peut pas être produit sur cet appareil.</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="408"/>
        <source>Cannot write &quot;%1&quot;: %2</source>
        <translation>Impossible d’écrire « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="430"/>
        <source>The PDF report needs the program&apos;s graphical part (QApplication).</source>
        <translation>Le rapport PDF exige la partie graphique du programme (QApplication).</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="146"/>
        <source>From holdings to the plan</source>
        <translation>Des placements actuels au plan</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="149"/>
        <source>Trades by account type</source>
        <translation>Opérations par type de compte</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="246"/>
        <source>Band (percentage points of each account): %1</source>
        <translation>Marge (points de pourcentage de chaque compte) : %1</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="249"/>
        <source>no sales in taxable accounts</source>
        <translation>aucune vente dans les comptes imposables</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="250"/>
        <source>sales allowed in every account</source>
        <translation>ventes permises dans tous les comptes</translation>
    </message>
</context>
<context>
    <name>tessary::TAllocationChart</name>
    <message>
        <location filename="../window/AllocationChart.cpp" line="27"/>
        <location filename="../window/AllocationChart.cpp" line="37"/>
        <source>Calculate to see the allocation</source>
        <translation>Calculez pour voir la répartition</translation>
    </message>
</context>
<context>
    <name>tessary::TComboDelegate</name>
    <message>
        <location filename="../window/GridView.cpp" line="140"/>
        <source>Not a number: type an amount such as 250000, $250,000 or 250 000 $</source>
        <translation>Ce n’est pas un nombre : tapez un montant comme 250000, 250 000 $ ou 250 000,50 $</translation>
    </message>
</context>
<context>
    <name>tessary::TDocumentController</name>
    <message>
        <location filename="../window/DocumentController.cpp" line="28"/>
        <source>Tessary worksheets (*.tessary)</source>
        <translation>Feuilles de travail Tessary (*.tessary)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="32"/>
        <source>allocation</source>
        <translation>repartition</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="78"/>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="79"/>
        <source>&amp;Open...</source>
        <translation>&amp;Ouvrir...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="80"/>
        <source>Open &amp;Recent</source>
        <translation>Ouvrir un fichier &amp;récent</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="81"/>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="82"/>
        <source>Save &amp;As...</source>
        <translation>Enregistrer &amp;sous...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="83"/>
        <source>&amp;Copy Result</source>
        <translation>&amp;Copier le résultat</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="84"/>
        <source>Export to CS&amp;V...</source>
        <translation>Exporter en CS&amp;V...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="85"/>
        <source>Export to P&amp;DF...</source>
        <translation>Exporter en P&amp;DF...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="86"/>
        <source>&amp;Print...</source>
        <translation>&amp;Imprimer...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="100"/>
        <location filename="../window/DocumentController.cpp" line="146"/>
        <location filename="../window/DocumentController.cpp" line="224"/>
        <source>Untitled</source>
        <translation>Sans titre</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="148"/>
        <source>Unsaved changes</source>
        <translation>Modifications non enregistrées</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="149"/>
        <source>The worksheet &quot;%1&quot; has changes that are not saved. Save them?</source>
        <translation>La feuille de travail « %1 » a des modifications non enregistrées. Les enregistrer ?</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="199"/>
        <source>Open Worksheet</source>
        <translation>Ouvrir une feuille de travail</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="225"/>
        <source>Save Worksheet</source>
        <translation>Enregistrer la feuille de travail</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="235"/>
        <source>Export to CSV</source>
        <translation>Exporter en CSV</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="235"/>
        <source>CSV files (*.csv)</source>
        <translation>Fichiers CSV (*.csv)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="245"/>
        <source>Export to PDF</source>
        <translation>Exporter en PDF</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="245"/>
        <source>PDF files (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="257"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
</context>
<context>
    <name>tessary::TForm1</name>
    <message>
        <location filename="../window/MainWindow.cpp" line="163"/>
        <source>Portfolio allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="164"/>
        <location filename="../window/MainWindow.cpp" line="165"/>
        <source>Calculate</source>
        <translation>Calculer</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="167"/>
        <location filename="../window/MainWindow.cpp" line="168"/>
        <location filename="../window/MainWindow.cpp" line="418"/>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="166"/>
        <source>Calculate (Ctrl+Enter)</source>
        <translation>Calculer (Ctrl+Entrée)</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="169"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="170"/>
        <location filename="../window/MainWindow.cpp" line="171"/>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="176"/>
        <source>Allocation chart</source>
        <translation>Graphique de répartition</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="178"/>
        <source>S&amp;ettings…</source>
        <translation>&amp;Paramètres…</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="399"/>
        <source>Portfolio Risk Tolerance</source>
        <translation>Tolérance au risque du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="418"/>
        <source>The help page could not be opened: %1</source>
        <translation>La page d’aide n’a pu être ouverte : %1</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="179"/>
        <source>&amp;Language</source>
        <translation>&amp;Langue</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="172"/>
        <source>Worksheets, export, print, settings and language</source>
        <translation>Feuilles de travail, exportation, impression, paramètres et langue</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="180"/>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="173"/>
        <location filename="../window/MainWindow.cpp" line="174"/>
        <source>Trades</source>
        <translation>Opérations</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="175"/>
        <source>From today&apos;s holdings to the plan (Ctrl+T)</source>
        <translation>Des placements actuels au plan (Ctrl+T)</translation>
    </message>
</context>
<context>
    <name>tessary::TFramelessWindow</name>
    <message>
        <location filename="../window/FramelessWindow.cpp" line="46"/>
        <source>Minimize</source>
        <translation>Réduire</translation>
    </message>
    <message>
        <location filename="../window/FramelessWindow.cpp" line="46"/>
        <source>Quit</source>
        <translation>Quitter</translation>
    </message>
    <message>
        <location filename="../window/FramelessWindow.cpp" line="50"/>
        <source>Resize</source>
        <translation>Redimensionner</translation>
    </message>
</context>
<context>
    <name>tessary::TImportSession</name>
    <message>
        <location filename="../import/ImportSession.cpp" line="356"/>
        <source>Select Corporation</source>
        <translation>Choisir la société</translation>
    </message>
    <message>
        <location filename="../import/ImportSession.cpp" line="357"/>
        <source>Select Trust</source>
        <translation>Choisir la fiducie</translation>
    </message>
    <message>
        <location filename="../import/ImportSession.cpp" line="358"/>
        <source>Select Party</source>
        <translation>Choisir la partie</translation>
    </message>
    <message>
        <location filename="../import/ImportSession.cpp" line="364"/>
        <source>All Shareholders</source>
        <translation>Tous les actionnaires</translation>
    </message>
    <message>
        <location filename="../import/ImportSession.cpp" line="365"/>
        <source>All Beneficiaries</source>
        <translation>Tous les bénéficiaires</translation>
    </message>
</context>
<context>
    <name>tessary::TInputGridsPanel</name>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="92"/>
        <source>Accounts</source>
        <translation>Comptes</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="93"/>
        <source>Asset class targets</source>
        <translation>Cibles par catégorie d’actif</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="94"/>
        <location filename="../window/InputGridsPanel.cpp" line="98"/>
        <source>Add</source>
        <translation>Ajout</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="95"/>
        <location filename="../window/InputGridsPanel.cpp" line="99"/>
        <source>Delete</source>
        <translation>Suppr.</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="96"/>
        <source>Clear</source>
        <translation>Vider</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="97"/>
        <source>Add from File</source>
        <translation>Importer</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="100"/>
        <source>Add an account row</source>
        <translation>Ajouter une ligne de compte</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="101"/>
        <source>Delete the current account row</source>
        <translation>Supprimer la ligne de compte courante</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="102"/>
        <source>Empty the accounts grid</source>
        <translation>Vider la grille des comptes</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="103"/>
        <source>Add a class row</source>
        <translation>Ajouter une ligne de catégorie</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="104"/>
        <source>Delete the current class row</source>
        <translation>Supprimer la ligne de catégorie courante</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="105"/>
        <source>Add accounts from a client file (Ctrl+I)</source>
        <translation>Ajouter les comptes d’un dossier client (Ctrl+I)</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="106"/>
        <source>Targets</source>
        <translation>Cibles</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="107"/>
        <source>Target presets</source>
        <translation>Répartitions cibles prédéfinies</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="108"/>
        <source>Fill the targets with a named mix</source>
        <translation>Remplir les cibles avec une répartition nommée</translation>
    </message>
</context>
<context>
    <name>tessary::TNoticeLine</name>
    <message>
        <location filename="../window/NoticeLine.cpp" line="14"/>
        <location filename="../window/NoticeLine.cpp" line="39"/>
        <source>Notices</source>
        <translation>Avis</translation>
    </message>
    <message numerus="yes">
        <location filename="../window/NoticeLine.cpp" line="32"/>
        <source>(%n more)</source>
        <translation>
            <numerusform>(%n autre)</numerusform>
            <numerusform>(%n autres)</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>tessary::TPresetsMenu</name>
    <message>
        <location filename="../window/PresetsMenu.cpp" line="38"/>
        <source>Save current targets as preset...</source>
        <translation>Enregistrer les cibles actuelles comme répartition...</translation>
    </message>
    <message>
        <location filename="../window/PresetsMenu.cpp" line="44"/>
        <source>Save targets</source>
        <translation>Enregistrer les cibles</translation>
    </message>
    <message>
        <location filename="../window/PresetsMenu.cpp" line="44"/>
        <source>Name of the target mix:</source>
        <translation>Nom de la répartition cible :</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="30"/>
        <source>Conservative</source>
        <translation>Prudent</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="31"/>
        <source>Balanced</source>
        <translation>Équilibré</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="32"/>
        <source>Growth</source>
        <translation>Croissance</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="33"/>
        <source>All equity</source>
        <translation>Actions seulement</translation>
    </message>
</context>
<context>
    <name>tessary::TTradesPage</name>
    <message>
        <location filename="../window/TradesPage.cpp" line="177"/>
        <location filename="../window/TradesPage.cpp" line="178"/>
        <source>Holdings today</source>
        <translation>Placements actuels</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="179"/>
        <source>Type amounts, or paste cells copied from a spreadsheet (Ctrl+V)</source>
        <translation>Saisissez les montants ou collez des cellules copiées d’un tableur (Ctrl+V)</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="180"/>
        <source>Load CSV...</source>
        <translation>Charger un CSV...</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="181"/>
        <source>Holdings from a CSV file: account type, class, amount</source>
        <translation>Placements tirés d’un fichier CSV : type de compte, catégorie, montant</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="182"/>
        <source>Clear</source>
        <translation>Vider</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="183"/>
        <source>Clear holdings</source>
        <translation>Vider les placements</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="184"/>
        <source>Band (percentage points):</source>
        <translation>Marge (points de pourcentage) :</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="185"/>
        <source>Band in percentage points</source>
        <translation>Marge en points de pourcentage</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="186"/>
        <source>Trades no larger than this share of the account are skipped</source>
        <translation>Les opérations qui ne dépassent pas cette part du compte sont omises</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="187"/>
        <source>No sales in taxable accounts</source>
        <translation>Aucune vente dans les comptes imposables</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="188"/>
        <location filename="../window/TradesPage.cpp" line="189"/>
        <source>Trades</source>
        <translation>Opérations</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="190"/>
        <source>Copy</source>
        <translation>Copier</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="191"/>
        <source>Copy the trades for a spreadsheet (Ctrl+C)</source>
        <translation>Copier les opérations pour un tableur (Ctrl+C)</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="192"/>
        <source>Export CSV...</source>
        <translation>Exporter en CSV...</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="256"/>
        <source>Not an amount: left out</source>
        <translation>Pas un montant : laissé de côté</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="334"/>
        <source>No plan yet: press Calculate on the allocation page.</source>
        <translation>Pas encore de plan : appuyez sur Calculer dans la page de répartition.</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="377"/>
        <source>Export Trades to CSV</source>
        <translation>Exporter les opérations en CSV</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="377"/>
        <location filename="../window/TradesPage.cpp" line="391"/>
        <source>CSV files (*.csv)</source>
        <translation>Fichiers CSV (*.csv)</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="380"/>
        <source>trades</source>
        <translation>operations</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="391"/>
        <source>Load Holdings</source>
        <translation>Charger les placements</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="400"/>
        <source>Cannot open &quot;%1&quot;: %2</source>
        <translation>Impossible d’ouvrir « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../window/TradesPage.cpp" line="407"/>
        <source>The holdings were not loaded: %1</source>
        <translation>Les placements n’ont pas été chargés : %1</translation>
    </message>
</context>
<context>
    <name>tessary::TdlgFromFile</name>
    <message>
        <location filename="../window/ImportDialog.cpp" line="40"/>
        <location filename="../window/ImportDialog.cpp" line="51"/>
        <location filename="../window/ImportDialog.cpp" line="55"/>
        <location filename="../window/ImportDialog.cpp" line="83"/>
        <source>Select File</source>
        <translation>Choisir le dossier</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="66"/>
        <source>Meridel: personal planning</source>
        <translation>Meridel : planification personnelle</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="67"/>
        <source>Basalto: corporate planning</source>
        <translation>Basalto : planification d’entreprise</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="68"/>
        <source>Quorren: trust planning</source>
        <translation>Quorren : planification de fiducie</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="85"/>
        <source>Select Solution</source>
        <translation>Choisir la solution</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="87"/>
        <location filename="../window/ImportDialog.cpp" line="89"/>
        <source>Select Party</source>
        <translation>Choisir la partie</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="99"/>
        <source>Settings…</source>
        <translation>Paramètres…</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="103"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="106"/>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="196"/>
        <source>No data folder is set for %1: choose one in Settings…</source>
        <translation>Aucun dossier de données n’est défini pour %1 : choisissez-en un dans Paramètres…</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="207"/>
        <source>%1 is protected: a client-file key is needed. Store it in Settings…, start Tessary with --key-file, or set TESSARY_CLIENT_KEY.</source>
        <translation>%1 est protégé : une clé de dossier client est nécessaire. Enregistrez-la dans Paramètres…, lancez Tessary avec --key-file ou définissez TESSARY_CLIENT_KEY.</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="199"/>
        <source>The data folder %1 does not exist.</source>
        <translation>Le répertoire de données %1 n’existe pas.</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="200"/>
        <source>The data folder %1 is not a folder.</source>
        <translation>Le répertoire de données %1 n’est pas un répertoire.</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="201"/>
        <source>The data folder %1 cannot be read.</source>
        <translation>Le répertoire de données %1 ne peut pas être lu.</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="202"/>
        <source>The data folder %1 holds no client files.</source>
        <translation>Le répertoire de données %1 ne contient aucun dossier client.</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="254"/>
        <source>%1 (locked)</source>
        <translation>%1 (verrouillé)</translation>
    </message>
</context>
<context>
    <name>tessary::TdlgSettings</name>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="37"/>
        <source>Settings</source>
        <translation>Paramètres</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="52"/>
        <source>This run was started with folder options; they are used instead of the folders below until Tessary is started without them.</source>
        <translation>Tessary a été lancé avec des options de dossier ; elles remplacent les dossiers ci-dessous jusqu’à un lancement sans elles.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="57"/>
        <source>Client-file folders</source>
        <translation>Dossiers des fichiers clients</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="64"/>
        <location filename="../window/SettingsDialog.cpp" line="71"/>
        <source>Client-file key</source>
        <translation>Clé des fichiers clients</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="67"/>
        <source>&amp;Key:</source>
        <translation>&amp;Clé :</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="73"/>
        <source>&amp;Test</source>
        <translation>&amp;Essayer</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="75"/>
        <source>Tries the entered key, else the configured one, on the first protected client file</source>
        <translation>Essaie la clé saisie, sinon la clé configurée, sur le premier fichier client protégé</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="82"/>
        <source>&amp;Forget</source>
        <translation>&amp;Oublier</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="84"/>
        <source>Removes the key from the system keyring</source>
        <translation>Retire la clé du trousseau du système</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="86"/>
        <source>A key is still kept in plain text in Tessary&apos;s settings file (Keys/ClientFileKey).</source>
        <translation>Une clé est encore conservée en clair dans le fichier de paramètres de Tessary (Keys/ClientFileKey).</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="90"/>
        <source>&amp;Move to keyring</source>
        <translation>&amp;Déplacer au trousseau</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="92"/>
        <source>Stores that key in the system keyring and removes it from the settings file</source>
        <translation>Enregistre cette clé dans le trousseau du système et la retire du fichier de paramètres</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="104"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="106"/>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="146"/>
        <source>Core folder:</source>
        <translation>Dossier commun :</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="146"/>
        <source>Data folder:</source>
        <translation>Dossier de données :</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="149"/>
        <source>Core folder of %1</source>
        <translation>Dossier commun de %1</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="149"/>
        <source>Data folder of %1</source>
        <translation>Dossier de données de %1</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="158"/>
        <source>not set</source>
        <translation>non défini</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="159"/>
        <source>%1&apos;s configuration: %2</source>
        <translation>configuration de %1 : %2</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="160"/>
        <source>Browse…</source>
        <translation>Parcourir…</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="162"/>
        <source>Browse for the %1</source>
        <translation>Parcourir : %1</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="195"/>
        <source>1 client file</source>
        <translation>1 fichier client</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="195"/>
        <source>%1 client files</source>
        <translation>%1 fichiers clients</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="197"/>
        <source>%1, 1 protected</source>
        <translation>%1, dont 1 protégé</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="197"/>
        <source>%1, %2 protected</source>
        <translation>%1, dont %2 protégés</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="207"/>
        <source>No data folder is set.</source>
        <translation>Aucun dossier de données n’est défini.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="208"/>
        <location filename="../window/SettingsDialog.cpp" line="224"/>
        <source>Folder not found.</source>
        <translation>Dossier introuvable.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="209"/>
        <location filename="../window/SettingsDialog.cpp" line="226"/>
        <source>Not a folder.</source>
        <translation>Ce n’est pas un dossier.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="210"/>
        <source>The folder cannot be read.</source>
        <translation>Le dossier ne peut pas être lu.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="211"/>
        <source>No client files in this folder.</source>
        <translation>Aucun fichier client dans ce dossier.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="214"/>
        <source>A client file cannot be read: %1</source>
        <translation>Un fichier client ne peut pas être lu : %1</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="222"/>
        <source>No core folder is set.</source>
        <translation>Aucun dossier commun n’est défini.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="228"/>
        <source>No Entries.dat in this folder.</source>
        <translation>Aucun Entries.dat dans ce dossier.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="230"/>
        <source>Entries.dat found.</source>
        <translation>Entries.dat trouvé.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="240"/>
        <source>No system keyring is available (no desktop session or Secret Service), so the key cannot be stored; --key-file, --key - and TESSARY_CLIENT_KEY still work.</source>
        <translation>Aucun trousseau du système n’est disponible (pas de session de bureau ni de Secret Service) : la clé ne peut pas être enregistrée ; --key-file, --key - et TESSARY_CLIENT_KEY fonctionnent toujours.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="245"/>
        <source>No key is stored in the system keyring.</source>
        <translation>Aucune clé n’est enregistrée dans le trousseau du système.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="247"/>
        <source>A key is stored in the system keyring.</source>
        <translation>Une clé est enregistrée dans le trousseau du système.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="250"/>
        <source>type a new key to store it</source>
        <translation>saisissez une nouvelle clé pour l’enregistrer</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="261"/>
        <source>No key is entered or configured.</source>
        <translation>Aucune clé n’est saisie ni configurée.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="269"/>
        <source>The key opens «%1» (%2).</source>
        <translation>La clé ouvre « %1 » (%2).</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="272"/>
        <source>The key does not open «%1» (%2).</source>
        <translation>La clé n’ouvre pas « %1 » (%2).</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="274"/>
        <source>No protected client file found.</source>
        <translation>Aucun fichier client protégé trouvé.</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="283"/>
        <location filename="../window/SettingsDialog.cpp" line="301"/>
        <source>The keyring refused the key: %1</source>
        <translation>Le trousseau a refusé la clé : %1</translation>
    </message>
    <message>
        <location filename="../window/SettingsDialog.cpp" line="294"/>
        <source>The keyring refused to remove the key: %1</source>
        <translation>Le trousseau a refusé de retirer la clé : %1</translation>
    </message>
</context>
<context>
    <name>tessary::Trades</name>
    <message>
        <location filename="../format/TradesFormat.cpp" line="126"/>
        <source>Cash to raise</source>
        <translation>Liquidités à dégager</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="127"/>
        <source>New cash</source>
        <translation>Nouvelles liquidités</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="135"/>
        <source>Left unplaced</source>
        <translation>Non placé</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="147"/>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="157"/>
        <source>Account type</source>
        <translation>Type de compte</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="158"/>
        <source>Asset class</source>
        <translation>Catégorie d’actif</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="159"/>
        <source>Current</source>
        <translation>Actuel</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="160"/>
        <source>Target</source>
        <translation>Cible</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="161"/>
        <source>Buy</source>
        <translation>Achat</translation>
    </message>
    <message>
        <location filename="../format/TradesFormat.cpp" line="162"/>
        <source>Sell</source>
        <translation>Vente</translation>
    </message>
</context>
<context>
    <name>tessary::Vocabulary</name>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="9"/>
        <source>Account Type</source>
        <translation>Type de compte</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="10"/>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="11"/>
        <source>Asset Class</source>
        <translation>Catégorie d’actif</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="12"/>
        <source>Value</source>
        <translation>Valeur</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="14"/>
        <source>Non-Reg.</source>
        <translation>Non enr.</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="15"/>
        <source>TFSAs</source>
        <translation>CELI</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="16"/>
        <source>RRSPs/RRIFs</source>
        <translation>REER/FERR</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="17"/>
        <source>LIRAs/LIFs</source>
        <translation>CRI/FRV</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="18"/>
        <source>DCPs/LRIFs</source>
        <translation>RPCD/FRRI</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="19"/>
        <source>MD Taxable</source>
        <translation>MD imposable</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="20"/>
        <source>BS Taxable</source>
        <translation>BS imposable</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="21"/>
        <source>QR Taxable</source>
        <translation>QR imposable</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="23"/>
        <source>Short-Term Fixed</source>
        <translation>Revenu fixe court terme</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="24"/>
        <source>Mid/Long-Term Fixed</source>
        <translation>Revenu fixe moyen/long terme</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="25"/>
        <source>Equities Canada</source>
        <translation>Actions canadiennes</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="26"/>
        <source>Equities U.S.</source>
        <translation>Actions américaines</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="27"/>
        <source>Equities Emerging Markets</source>
        <translation>Actions marchés émergents</translation>
    </message>
    <message>
        <location filename="../window/TranslatableTexts.cpp" line="28"/>
        <source>Equities Global</source>
        <translation>Actions mondiales</translation>
    </message>
</context>
<context>
    <name>tessary::Worksheet</name>
    <message>
        <location filename="../report/Worksheet.cpp" line="101"/>
        <source>The worksheet &quot;%1&quot; is damaged: %2.</source>
        <translation>La feuille de travail « %1 » est endommagée : %2.</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="108"/>
        <source>%1 has no &quot;%2&quot; object</source>
        <translation>%1 n’a pas d’objet « %2 »</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="115"/>
        <source>%1 is missing or not a list</source>
        <translation>%1 manque ou n’est pas une liste</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="122"/>
        <source>%1 is not a whole number from %2 to %3</source>
        <translation>%1 n’est pas un nombre entier de %2 à %3</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="148"/>
        <source>cell %1 of %2 is neither empty, a text nor a number</source>
        <translation>la cellule %1 de %2 n’est ni vide, ni un texte, ni un nombre</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="155"/>
        <source>%1 is not an object</source>
        <translation>%1 n’est pas un objet</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="159"/>
        <source>the cell list of %1</source>
        <translation>la liste des cellules de %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="161"/>
        <source>%1 has %2 cells, not %3</source>
        <translation>%1 a %2 cellules, et non %3</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="170"/>
        <source>the object of %1</source>
        <translation>l’objet de %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="176"/>
        <location filename="../report/Worksheet.cpp" line="188"/>
        <location filename="../report/Worksheet.cpp" line="233"/>
        <source>the document</source>
        <translation>le document</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="179"/>
        <source>the row list of the %1</source>
        <translation>la liste des lignes des %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="183"/>
        <source>%1 row %2</source>
        <translation>la ligne %2 des %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="190"/>
        <source>the row list of the result</source>
        <translation>la liste des lignes du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="192"/>
        <source>the result has fewer than its %1 header rows</source>
        <translation>le résultat a moins que ses %1 lignes d’en-tête</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="196"/>
        <source>the result&apos;s column count</source>
        <translation>le nombre de colonnes du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="200"/>
        <source>result row %1 does not have %2 cells</source>
        <translation>la ligne %1 du résultat n’a pas %2 cellules</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="207"/>
        <source>result row %1</source>
        <translation>la ligne %1 du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="211"/>
        <source>the merge list of the result</source>
        <translation>la liste des fusions du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="214"/>
        <source>merged cell %1 of the result</source>
        <translation>la cellule fusionnée %1 du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="217"/>
        <source>%1 does not have 4 numbers</source>
        <translation>%1 n’a pas 4 nombres</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="295"/>
        <source>the file is empty</source>
        <translation>le fichier est vide</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="303"/>
        <location filename="../report/Worksheet.cpp" line="312"/>
        <location filename="../report/Worksheet.cpp" line="372"/>
        <source>&quot;%1&quot; is not a Tessary worksheet.</source>
        <translation>« %1 » n’est pas une feuille de travail Tessary.</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="304"/>
        <source>%1 at byte %2</source>
        <translation>%1 à l’octet %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="316"/>
        <source>the version</source>
        <translation>la version</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="319"/>
        <source>&quot;%1&quot; was saved by a newer Tessary (worksheet version %2; this one reads version %3).</source>
        <translation>« %1 » a été enregistrée par un Tessary plus récent (feuille de travail de version %2 ; celui-ci lit la version %3).</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="327"/>
        <source>accounts</source>
        <translation>comptes</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="328"/>
        <source>classes</source>
        <translation>catégories</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="340"/>
        <source>Cannot save the worksheet &quot;%1&quot;: %2</source>
        <translation>Impossible d’enregistrer la feuille de travail « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="352"/>
        <source>Cannot open the worksheet &quot;%1&quot;: %2</source>
        <translation>Impossible d’ouvrir la feuille de travail « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="362"/>
        <source>it is a folder</source>
        <translation>c’est un dossier</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="363"/>
        <source>it is not a regular file</source>
        <translation>ce n’est pas un fichier ordinaire</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="236"/>
        <source>the band is not a number from 0 to 100</source>
        <translation>la marge n’est pas un nombre de 0 à 100</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="238"/>
        <source>&quot;noSellTaxable&quot; is not true or false</source>
        <translation>« noSellTaxable » n’est ni vrai ni faux</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="242"/>
        <source>the row list of the holdings</source>
        <translation>la liste des lignes des placements</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="244"/>
        <source>holdings row %1</source>
        <translation>la ligne %1 des placements</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="251"/>
        <source>%1 names no known account type and class</source>
        <translation>%1 ne nomme pas un type de compte et une catégorie connus</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="256"/>
        <source>%1 has no amount</source>
        <translation>%1 n’a pas de montant</translation>
    </message>
</context>
</TS>
