#include "ui/screens/about/about_view.h"

#include "app/app_model.h"
#include "ui/controls/card_surface.h"
#include "ui/controls/form.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/thin_divider.h"
#include "ui/screens/about/about_row.h"
#include "ui/screens/about/product.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QUrl>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr BilingualText versionLabel{"版本 ", "Version "};
constexpr BilingualText updatesText{"检查版本更新", "Check for updates"};
constexpr BilingualText contactText{"联系", "Contact"};
constexpr BilingualText linksText{"链接", "Links"};
constexpr BilingualText websiteText{"官网", "Website"};

constexpr int screenPadding = 28;
constexpr int logoSize = 112;
constexpr int widestCard = 520;
constexpr int dividerIndent = 44;
constexpr double nameSize = 30;

// QDesktopServices starts the browser or the mail program and does not wait for it.
void openOnClick(AboutRow& row, const QUrl& address)
{
    QObject::connect(&row, &QAbstractButton::clicked, &row,
                     [address] { QDesktopServices::openUrl(address); });
}

} // namespace

AboutView::AboutView(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_version(new FormLabel(textFont(TextRole::callout), ThemeColor::secondaryLabel, this))
{
    auto* card = new CardSurface(0, this);
    m_updates = new AboutRow(Symbol::arrowTriangle2Circlepath, Qt::TopEdge, card);
    m_contact = new AboutRow(Symbol::envelope, {}, card);
    m_website = new AboutRow(Symbol::globe, Qt::BottomEdge, card);
    m_contact->setDetail(qtText(contactAddress));
    m_website->setDetail(qtText(productSiteHost));
    openOnClick(*m_updates, QUrl(qtText(productSite)));
    openOnClick(*m_contact, QUrl(QStringLiteral("mailto:") + qtText(contactAddress)));
    openOnClick(*m_website, QUrl(qtText(productSite)));

    auto* rows = new QVBoxLayout(card);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    for (AboutRow* row : {m_updates, m_contact, m_website}) {
        if (row != m_updates) {
            auto* divider = new ThinDivider(card);
            divider->setLeadingIndent(dividerIndent);
            rows->addWidget(divider);
        }
        rows->addWidget(row);
    }
    card->setMaximumWidth(widestCard + CardSurface::shadowMargins.left() +
                          CardSurface::shadowMargins.right());

    auto* name = new FormLabel(systemFont(nameSize, QFont::DemiBold), ThemeColor::label, this);
    makeSpokenElement(*name, QAccessible::Heading, [name] { return name->text(); });
    name->setText(QStringLiteral("Brevlin"));
    makeSpokenGroup(*card, QAccessible::Grouping,
                    [&model] { return qtText(linksText.in(model.language())); });
    m_version->raise(); // they are read in the order in which they are seen
    card->raise();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(screenPadding, screenPadding, screenPadding, screenPadding);
    column->setSpacing(0);
    column->addStretch(1);
    column->addWidget(new BrevlinLogoView(logoSize, this), 0, Qt::AlignHCenter);
    column->addSpacing(7);
    column->addWidget(name, 0, Qt::AlignHCenter);
    column->addSpacing(5);
    column->addWidget(m_version, 0, Qt::AlignHCenter);
    column->addSpacing(34);
    auto* centred = new QHBoxLayout;
    centred->addStretch(1);
    centred->addWidget(card, 1000); // as wide as it may be, before the sides get anything
    centred->addStretch(1);
    column->addLayout(centred);
    column->addStretch(1);
    connect(&model, &AppModel::preferencesChanged, this, &AboutView::refresh);
    refresh();
}

void AboutView::refresh()
{
    const AppLanguage language = m_model.language();
    m_version->setText(qtText(versionLabel.in(language)) +
                       QString::fromStdString(versionText(productVersion(), language)));
    m_updates->setText(qtText(updatesText.in(language)));
    m_contact->setText(qtText(contactText.in(language)));
    m_website->setText(qtText(websiteText.in(language)));
}

} // namespace brevlin
