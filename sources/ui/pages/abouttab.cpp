#include "ui/pages/abouttab.h"

#include "ui/scrolling/qskineticscroller.h"
#include "ui/theme/theme.h"
#include "utils/translations.h"
#include "utils/utils.h"

#include "ui_abouttab.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace velometer {

namespace {
constexpr qreal pageMargin = 12; // px
}

AboutTab::AboutTab(QWidget *parent)
    : TabBase(parent)
    , ui(std::make_unique<Ui::AboutTab>())
{
    ui->setupUi(this);
    fillFrame();
    ui->textBrowser->document()->setDocumentMargin(pageMargin);
    connect(ui->textBrowser, &QTextBrowser::anchorClicked, this, &AboutTab::openLink);
    auto *scroller = new QsKineticScroller(this);
    scroller->enableKineticScrollFor(ui->textBrowser);
    showDefaultPage();
}

AboutTab::~AboutTab() = default;

void AboutTab::showDefaultPage()
{
    ui->notice->hide();
    const QString language = Translations::language();
    const QString page = language == "de"_L1 ? u"de"_s : u"en"_s;
    ui->textBrowser->setHtml(
        Theme::named(Utils::readFile(u":/velometerres/about_%1.html"_s.arg(page))));
}

void AboutTab::dress()
{
    showDefaultPage();
}

void AboutTab::retranslate()
{
    ui->retranslateUi(this);
    showDefaultPage();
}

void AboutTab::openLink(const QUrl &link)
{
    const QString scheme = link.scheme();
    if (scheme == "https"_L1 || scheme == "http"_L1 || scheme == "mailto"_L1) {
        const QString address = link.toString();
        scheme == "mailto"_L1 ? ui->notice->openMail(address, link.path())
                              : ui->notice->openPage(address);
    }
}

} // namespace velometer
