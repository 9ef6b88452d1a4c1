#include "import/KeyStore.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>
#include <qt6keychain/keychain.h>
#include <type_traits>

#include "import/ImportLog.h"

namespace tessary {

namespace {

// A secret store that neither answers nor fails (a hung bus) must not freeze
// the window or a script.
constexpr int kJobTimeoutMs = 20000;

struct TOutcome {
    QKeychain::Error Code = QKeychain::OtherError;
    QString Text;
};

// Runs a job to its end. A job still running at the timeout deletes itself
// when it ends: its callbacks may still arrive.
template <class Job>
TOutcome Run(Job* job, QString* secret = nullptr) {
    if (!QCoreApplication::instance()) {
        delete job;
        return {QKeychain::OtherError, QStringLiteral("no application to run the keyring's job")};
    }
    job->setAutoDelete(false);
    job->setInsecureFallback(false);
    job->setKey(QString::fromLatin1(kKeyringAccount));
    bool finished = false;
    QEventLoop loop;
    QObject::connect(job, &QKeychain::Job::finished, &loop, [&finished, &loop] {
        finished = true;
        loop.quit();
    });
    QTimer::singleShot(kJobTimeoutMs, &loop, &QEventLoop::quit);
    job->start();
    if (!finished) loop.exec();
    if (!finished) {
        QObject::disconnect(job, nullptr, &loop, nullptr);
        job->setAutoDelete(true);
        return {QKeychain::OtherError, QStringLiteral("the keyring did not answer")};
    }
    TOutcome outcome{job->error(), job->errorString()};
    if (secret && outcome.Code == QKeychain::NoError) {
        if constexpr (std::is_same_v<Job, QKeychain::ReadPasswordJob>) *secret = job->textData();
    }
    delete job;
    return outcome;
}

QString Service() { return QString::fromLatin1(kKeyringService); }

} // namespace

TKeyringRead TKeyStore::Read() const {
    TKeyringRead result;
    const TOutcome o = Run(new QKeychain::ReadPasswordJob(Service()), &result.Key);
    result.Reached = o.Code == QKeychain::NoError || o.Code == QKeychain::EntryNotFound;
    if (!result.Reached) {
        result.Error = o.Text;
        qCInfo(lcImport).noquote() << "keyring not reached:" << o.Text;
    }
    return result;
}

QString TKeyStore::Write(const QString& key) const {
    auto* job = new QKeychain::WritePasswordJob(Service());
    job->setTextData(key);
    const TOutcome o = Run(job);
    return o.Code == QKeychain::NoError ? QString() : o.Text;
}

QString TKeyStore::Remove() const {
    const TOutcome o = Run(new QKeychain::DeletePasswordJob(Service()));
    return o.Code == QKeychain::NoError || o.Code == QKeychain::EntryNotFound ? QString() : o.Text;
}

} // namespace tessary
