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
        <source>%1 holds a negative amount, %2.</source>
        <translation>%1 contient un montant négatif, %2.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="88"/>
        <source>%1 holds %2, more than a portfolio plausibly holds.</source>
        <translation>%1 contient %2, plus qu’un portefeuille ne contient vraisemblablement.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="91"/>
        <source>%1 has a negative target, %2%.</source>
        <translation>%1 a une cible négative, %2 %.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="100"/>
        <source>%1, column %2: &quot;%3&quot; is not a number; it counts as 0.</source>
        <translation>%1, colonne %2 : « %3 » n’est pas un nombre ; il compte pour 0.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="104"/>
        <source>%1 has an unknown account type (%2); Calculate drops it.</source>
        <translation>%1 a un type de compte inconnu (%2) ; Calculer la supprime.</translation>
    </message>
    <message>
        <location filename="../window/NoticeText.cpp" line="109"/>
        <source>%1 has an unknown asset class (%2); Calculate drops it.</source>
        <translation>%1 a une catégorie d’actif inconnue (%2) ; Calculer la supprime.</translation>
    </message>
</context>
<context>
    <name>tessary::Report</name>
    <message>
        <location filename="../report/Report.cpp" line="79"/>
        <source>Total</source>
        <translation>Total</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="254"/>
        <location filename="../report/Report.cpp" line="316"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="261"/>
        <source>Accounts</source>
        <translation>Comptes</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="262"/>
        <source>Targets</source>
        <translation>Cibles</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="267"/>
        <source>Allocation</source>
        <translation>Répartition</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="272"/>
        <source>Amounts by account type</source>
        <translation>Montants par type de compte</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="279"/>
        <source>Prepared with Tessary</source>
        <translation>Préparé avec Tessary</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="300"/>
        <source>The report cannot be painted on this device.</source>
        <translation>Le rapport ne peut pas être produit sur cet appareil.</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="309"/>
        <source>Cannot write &quot;%1&quot;: %2</source>
        <translation>Impossible d’écrire « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Report.cpp" line="326"/>
        <source>The PDF report needs the program&apos;s graphical part (QApplication).</source>
        <translation>Le rapport PDF exige la partie graphique du programme (QApplication).</translation>
    </message>
</context>
<context>
    <name>tessary::TAllocationChart</name>
    <message>
        <location filename="../window/AllocationChart.cpp" line="26"/>
        <location filename="../window/AllocationChart.cpp" line="36"/>
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
        <location filename="../window/DocumentController.cpp" line="27"/>
        <source>Tessary worksheets (*.tessary)</source>
        <translation>Feuilles de travail Tessary (*.tessary)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="31"/>
        <source>allocation</source>
        <translation>repartition</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="80"/>
        <source>&amp;New</source>
        <translation>&amp;Nouveau</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="81"/>
        <source>&amp;Open...</source>
        <translation>&amp;Ouvrir...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="82"/>
        <source>Open &amp;Recent</source>
        <translation>Ouvrir un fichier &amp;récent</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="83"/>
        <source>&amp;Save</source>
        <translation>&amp;Enregistrer</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="84"/>
        <source>Save &amp;As...</source>
        <translation>Enregistrer &amp;sous...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="85"/>
        <source>&amp;Copy Result</source>
        <translation>&amp;Copier le résultat</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="86"/>
        <source>Export to CS&amp;V...</source>
        <translation>Exporter en CS&amp;V...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="87"/>
        <source>Export to P&amp;DF...</source>
        <translation>Exporter en P&amp;DF...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="88"/>
        <source>&amp;Print...</source>
        <translation>&amp;Imprimer...</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="100"/>
        <location filename="../window/DocumentController.cpp" line="145"/>
        <location filename="../window/DocumentController.cpp" line="220"/>
        <source>Untitled</source>
        <translation>Sans titre</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="146"/>
        <source>Unsaved changes</source>
        <translation>Modifications non enregistrées</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="147"/>
        <source>The worksheet &quot;%1&quot; has changes that are not saved. Save them?</source>
        <translation>La feuille de travail « %1 » a des modifications non enregistrées. Les enregistrer ?</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="196"/>
        <source>Open Worksheet</source>
        <translation>Ouvrir une feuille de travail</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="222"/>
        <source>Save Worksheet</source>
        <translation>Enregistrer la feuille de travail</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="233"/>
        <source>Export to CSV</source>
        <translation>Exporter en CSV</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="233"/>
        <source>CSV files (*.csv)</source>
        <translation>Fichiers CSV (*.csv)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="244"/>
        <source>Export to PDF</source>
        <translation>Exporter en PDF</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="244"/>
        <source>PDF files (*.pdf)</source>
        <translation>Fichiers PDF (*.pdf)</translation>
    </message>
    <message>
        <location filename="../window/DocumentController.cpp" line="256"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
</context>
<context>
    <name>tessary::TForm1</name>
    <message>
        <location filename="../window/MainWindow.cpp" line="136"/>
        <source>Portfolio allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="137"/>
        <location filename="../window/MainWindow.cpp" line="138"/>
        <source>Calculate</source>
        <translation>Calculer</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="140"/>
        <location filename="../window/MainWindow.cpp" line="141"/>
        <location filename="../window/MainWindow.cpp" line="353"/>
        <source>Help</source>
        <translation>Aide</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="139"/>
        <source>Calculate (Ctrl+Enter)</source>
        <translation>Calculer (Ctrl+Entrée)</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="142"/>
        <source>Portfolio Allocation</source>
        <translation>Répartition du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="143"/>
        <location filename="../window/MainWindow.cpp" line="144"/>
        <source>File</source>
        <translation>Fichier</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="145"/>
        <source>Worksheets, export, print and language</source>
        <translation>Feuilles de travail, exportation, impression et langue</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="146"/>
        <source>Allocation chart</source>
        <translation>Graphique de répartition</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="335"/>
        <source>Portfolio Risk Tolerance</source>
        <translation>Tolérance au risque du portefeuille</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="353"/>
        <source>The help page could not be opened: %1</source>
        <translation>La page d’aide n’a pu être ouverte : %1</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="148"/>
        <source>&amp;Language</source>
        <translation>&amp;Langue</translation>
    </message>
    <message>
        <location filename="../window/MainWindow.cpp" line="149"/>
        <source>&amp;Quit</source>
        <translation>&amp;Quitter</translation>
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
    <name>tessary::TInputGridsPanel</name>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="90"/>
        <source>Accounts</source>
        <translation>Comptes</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="91"/>
        <source>Asset class targets</source>
        <translation>Cibles par catégorie d’actif</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="92"/>
        <location filename="../window/InputGridsPanel.cpp" line="96"/>
        <source>Add</source>
        <translation>Ajout</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="93"/>
        <location filename="../window/InputGridsPanel.cpp" line="97"/>
        <source>Delete</source>
        <translation>Suppr.</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="94"/>
        <source>Clear</source>
        <translation>Vider</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="95"/>
        <source>Add from File</source>
        <translation>Importer</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="98"/>
        <source>Add an account row</source>
        <translation>Ajouter une ligne de compte</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="99"/>
        <source>Delete the current account row</source>
        <translation>Supprimer la ligne de compte courante</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="100"/>
        <source>Empty the accounts grid</source>
        <translation>Vider la grille des comptes</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="101"/>
        <source>Add a class row</source>
        <translation>Ajouter une ligne de catégorie</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="102"/>
        <source>Delete the current class row</source>
        <translation>Supprimer la ligne de catégorie courante</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="103"/>
        <source>Add accounts from a client file (Ctrl+I)</source>
        <translation>Ajouter les comptes d’un dossier client (Ctrl+I)</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="104"/>
        <source>Targets</source>
        <translation>Cibles</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="105"/>
        <source>Target presets</source>
        <translation>Répartitions cibles prédéfinies</translation>
    </message>
    <message>
        <location filename="../window/InputGridsPanel.cpp" line="106"/>
        <source>Fill the targets with a named mix</source>
        <translation>Remplir les cibles avec une répartition nommée</translation>
    </message>
</context>
<context>
    <name>tessary::TNoticeLine</name>
    <message>
        <location filename="../window/NoticeLine.cpp" line="14"/>
        <location filename="../window/NoticeLine.cpp" line="38"/>
        <source>Notices</source>
        <translation>Avis</translation>
    </message>
    <message numerus="yes">
        <location filename="../window/NoticeLine.cpp" line="31"/>
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
    <name>tessary::TdlgFromFile</name>
    <message>
        <location filename="../window/ImportDialog.cpp" line="28"/>
        <location filename="../window/ImportDialog.cpp" line="39"/>
        <location filename="../window/ImportDialog.cpp" line="43"/>
        <location filename="../window/ImportDialog.cpp" line="71"/>
        <source>Select File</source>
        <translation>Choisir le dossier</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="54"/>
        <source>Meridel: personal planning</source>
        <translation>Meridel : planification personnelle</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="55"/>
        <source>Basalto: corporate planning</source>
        <translation>Basalto : planification d’entreprise</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="56"/>
        <source>Quorren: trust planning</source>
        <translation>Quorren : planification de fiducie</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="73"/>
        <source>Select Solution</source>
        <translation>Choisir la solution</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="75"/>
        <location filename="../window/ImportDialog.cpp" line="77"/>
        <source>Select Party</source>
        <translation>Choisir la partie</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="82"/>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <location filename="../window/ImportDialog.cpp" line="85"/>
        <source>Cancel</source>
        <translation>Annuler</translation>
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
        <location filename="../report/Worksheet.cpp" line="84"/>
        <source>The worksheet &quot;%1&quot; is damaged: %2.</source>
        <translation>La feuille de travail « %1 » est endommagée : %2.</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="89"/>
        <source>%1 has no &quot;%2&quot; object</source>
        <translation>%1 n’a pas d’objet « %2 »</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="94"/>
        <source>%1 is missing or not a list</source>
        <translation>%1 manque ou n’est pas une liste</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="101"/>
        <source>%1 is not a whole number from %2 to %3</source>
        <translation>%1 n’est pas un nombre entier de %2 à %3</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="124"/>
        <source>cell %1 of %2 is neither empty, a text nor a number</source>
        <translation>la cellule %1 de %2 n’est ni vide, ni un texte, ni un nombre</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="129"/>
        <source>%1 is not an object</source>
        <translation>%1 n’est pas un objet</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="131"/>
        <source>the cell list of %1</source>
        <translation>la liste des cellules de %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="133"/>
        <source>%1 has %2 cells, not %3</source>
        <translation>%1 a %2 cellules, et non %3</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="137"/>
        <source>the object of %1</source>
        <translation>l’objet de %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="143"/>
        <location filename="../report/Worksheet.cpp" line="151"/>
        <source>the document</source>
        <translation>le document</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="144"/>
        <source>the row list of the %1</source>
        <translation>la liste des lignes des %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="147"/>
        <source>%1 row %2</source>
        <translation>la ligne %2 des %1</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="152"/>
        <source>the row list of the result</source>
        <translation>la liste des lignes du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="153"/>
        <source>the result has fewer than its %1 header rows</source>
        <translation>le résultat a moins que ses %1 lignes d’en-tête</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="155"/>
        <source>the result&apos;s column count</source>
        <translation>le nombre de colonnes du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="159"/>
        <source>result row %1 does not have %2 cells</source>
        <translation>la ligne %1 du résultat n’a pas %2 cellules</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="163"/>
        <source>result row %1</source>
        <translation>la ligne %1 du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="165"/>
        <source>the merge list of the result</source>
        <translation>la liste des fusions du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="167"/>
        <source>merged cell %1 of the result</source>
        <translation>la cellule fusionnée %1 du résultat</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="169"/>
        <source>%1 does not have 4 numbers</source>
        <translation>%1 n’a pas 4 nombres</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="213"/>
        <source>the file is empty</source>
        <translation>le fichier est vide</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="219"/>
        <location filename="../report/Worksheet.cpp" line="224"/>
        <location filename="../report/Worksheet.cpp" line="274"/>
        <source>&quot;%1&quot; is not a Tessary worksheet.</source>
        <translation>« %1 » n’est pas une feuille de travail Tessary.</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="220"/>
        <source>%1 at byte %2</source>
        <translation>%1 à l’octet %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="227"/>
        <source>the version</source>
        <translation>la version</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="230"/>
        <source>&quot;%1&quot; was saved by a newer Tessary (worksheet version %2; this one reads version %3).</source>
        <translation>« %1 » a été enregistrée par un Tessary plus récent (feuille de travail de version %2 ; celui-ci lit la version %3).</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="236"/>
        <source>accounts</source>
        <translation>comptes</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="237"/>
        <source>classes</source>
        <translation>catégories</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="247"/>
        <source>Cannot save the worksheet &quot;%1&quot;: %2</source>
        <translation>Impossible d’enregistrer la feuille de travail « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="257"/>
        <source>Cannot open the worksheet &quot;%1&quot;: %2</source>
        <translation>Impossible d’ouvrir la feuille de travail « %1 » : %2</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="266"/>
        <source>it is a folder</source>
        <translation>c’est un dossier</translation>
    </message>
    <message>
        <location filename="../report/Worksheet.cpp" line="267"/>
        <source>it is not a regular file</source>
        <translation>ce n’est pas un fichier ordinaire</translation>
    </message>
</context>
</TS>
