// What an operator is told about a machine before a service runs on it.
#include "main/openstore.h"
#include "main/tasks.h"
#include "net/tls.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace velometer::Tasks {

namespace {

/// Two descriptors a connection of a pair of services, and some hundred clients at once.
constexpr rlim_t fewDescriptors = 8192;

/// What a path of 1 Gbit/s and 100 ms holds, in bytes.
constexpr qint64 wantedBuffer = 12'500'000;

constexpr qint64 certificateWarningMs = qint64{14} * 24 * 3600 * 1000;

class Findings
{
public:
    void good(const QString &text) { print(u"ok"_s, text); }
    void warn(const QString &text) { print(u"warning"_s, text); }
    void fault(const QString &text)
    {
        print(u"error"_s, text);
        failed = true;
    }
    bool hasFailed() const { return failed; }

private:
    static void print(const QString &kind, const QString &text)
    {
        std::fprintf(stdout, "%-7s  %s\n", qUtf8Printable(kind), qUtf8Printable(text));
    }
    bool failed = false;
};

/// The words of one of the kernel's settings; none where it has no such setting.
QStringList kernelWords(const QString &name)
{
    QFile file(u"/proc/sys/net/"_s + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll())
                                                .split(QChar(u'\n'))
                                                .value(0)
                                                .simplified()
                                                .split(u' ')
                                          : QStringList();
}

void checkKernel(Findings &findings)
{
    if (kernelWords(u"ipv4/tcp_available_congestion_control"_s).contains(u"bbr"_s)) {
        findings.good(u"the kernel has the congestion control BBR"_s);
    } else {
        findings.warn(u"the kernel has not loaded the congestion control BBR, without which lossy "
                      "links read too low: modprobe tcp_bbr, and write tcp_bbr into "
                      "/etc/modules-load.d/velometer.conf"_s);
    }
    for (const auto *name : {"tcp_wmem", "tcp_rmem"}) {
        const qint64 most = kernelWords(u"ipv4/"_s + QLatin1StringView(name)).value(2).toLongLong();
        if (most >= wantedBuffer) {
            findings.good(u"net.ipv4.%1 allows %2 bytes a connection"_s.arg(QLatin1StringView(name))
                              .arg(most));
        } else if (most > 0) {
            findings.warn(u"net.ipv4.%1 allows %2 bytes a connection, too few for 1 Gbit/s over "
                          "100 ms: set its third number to 16777216 in /etc/sysctl.d/"
                          "velometer.conf"_s.arg(QLatin1StringView(name))
                              .arg(most));
        }
    }
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_max < fewDescriptors) {
        findings.warn(u"the process may open %1 files, and each connection is one: raise "
                      "LimitNOFILE to 65536"_s.arg(limit.rlim_max));
    } else {
        findings.good(u"the process may open %1 files"_s.arg(limit.rlim_max));
    }
}

void checkStore(const StoreOptions &options, Findings &findings)
{
    const bool isNew = !options.database.contains(u"://"_s) && !QFile::exists(options.database);
    QString problem;
    if (isNew) {
        QString folder = QFileInfo(options.database).absolutePath();
        while (!QFile::exists(folder)) {
            folder = QFileInfo(folder).absolutePath();
        }
        if (QFileInfo(folder).isDir() && QFileInfo(folder).isWritable()) {
            findings.good(u"the database %1 will be made"_s.arg(options.database));
        } else {
            findings.fault(u"the database %1 cannot be made: nothing can be written into %2"_s.arg(
                options.database, folder));
        }
        return;
    }
    const OpenStore open(options.database, false, &problem);
    if (open.connection) {
        findings.good(u"the database %1 can be read"_s.arg(open.database->shownName()));
    } else if (problem.contains(u"not of this version"_s)) {
        findings.warn(problem.chopped(1));
    } else {
        findings.fault(problem.chopped(1));
    }
    if (const QString shortage = open.database->shortage(); !shortage.isEmpty()) {
        findings.fault(u"the store takes no reports: "_s + shortage);
    }
    const bool hasKey = QFile::exists(options.shownKeyFile());
    if (!hasKey) {
        findings.warn(u"there is no device key %1: a first start makes it, a data base of another "
                      "service needs that service's"_s.arg(options.shownKeyFile()));
    } else if (QFile::permissions(options.shownKeyFile()) &
               (QFile::ReadGroup | QFile::ReadOther | QFile::WriteGroup | QFile::WriteOther)) {
        findings.fault(
            u"others may read the device key %1: chmod 600 %1"_s.arg(options.shownKeyFile()));
    } else {
        findings.good(u"the device key is %1"_s.arg(options.shownKeyFile()));
    }
}

void checkTls(const ServerOptions &options, Findings &findings)
{
    if (options.tlsCertificate.isEmpty()) {
        return;
    }
    QString problem;
    const auto context = makeTlsContext(options.tlsCertificate, options.tlsKey, &problem);
    if (!context) {
        findings.fault(problem.chopped(1));
        return;
    }
    const qint64 left = context->expires - QDateTime::currentMSecsSinceEpoch();
    const QString day =
        QDateTime::fromMSecsSinceEpoch(context->expires).date().toString(Qt::ISODate);
    if (left <= 0) {
        findings.fault(
            u"the certificate %1 has expired on %2: renew it"_s.arg(options.tlsCertificate, day));
    } else if (left < certificateWarningMs) {
        findings.warn(u"the certificate %1 expires on %2: renew it and send the service "
                      "SIGHUP"_s.arg(options.tlsCertificate, day));
    } else {
        findings.good(u"the certificate %1 is valid until %2"_s.arg(options.tlsCertificate, day));
    }
}

} // namespace

int check(const ServerOptions &options)
{
    Findings findings;
    checkStore(options.store, findings);
    checkTls(options, findings);
    checkKernel(findings);
    return findings.hasFailed() ? 1 : 0;
}

} // namespace velometer::Tasks
