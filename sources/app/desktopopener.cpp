#include "app/desktopopener.h"

#include <QProcess>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

// Qt's own QDesktopServices would let the opener write on our standard error.
bool DesktopOpener::open(const QUrl &address)
{
    QProcess opener;
    opener.setProgram(u"xdg-open"_s);
    opener.setArguments({address.toString(QUrl::FullyEncoded)});
    opener.setStandardInputFile(QProcess::nullDevice());
    opener.setStandardOutputFile(QProcess::nullDevice());
    opener.setStandardErrorFile(QProcess::nullDevice());
    return opener.startDetached();
}

} // namespace velometer
