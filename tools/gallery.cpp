#include "ui/controls/bar_buttons.h"
#include "ui/controls/brevlin_style.h"
#include "ui/controls/capsule_button.h"
#include "ui/controls/card_surface.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/thin_divider.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/symbol.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QApplication>
#include <QDir>
#include <QFocusEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

using namespace brevlin;

namespace {

class Canvas final : public QWidget
{
protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        painter.fillRect(rect(), Theme::of(*this).color(ThemeColor::canvas));
    }
};

void focusByKeyboard(QWidget* widget)
{
    QFocusEvent event(QEvent::FocusIn, Qt::TabFocusReason);
    QCoreApplication::sendEvent(widget, &event);
}

QHBoxLayout* addRow(QVBoxLayout* column, int spacing)
{
    auto* row = new QHBoxLayout;
    row->setSpacing(spacing);
    column->addLayout(row);
    return row;
}

void addSymbols(QVBoxLayout* column)
{
    constexpr int perRow = 17;
    for (const int size : {14, 16, 24, 48}) {
        QHBoxLayout* row = nullptr;
        for (int index = 1; index <= static_cast<int>(Symbol::xmark); ++index) {
            if ((index - 1) % perRow == 0) {
                if (row != nullptr)
                    row->addStretch();
                row = addRow(column, 6);
            }
            row->addWidget(new SymbolView(static_cast<Symbol>(index), size, ThemeColor::label));
        }
        row->addStretch();
    }
}

void addBar(QVBoxLayout* column)
{
    QHBoxLayout* bar = addRow(column, 3);
    bar->addSpacing(18);
    for (const auto kind : {WindowButton::Kind::close, WindowButton::Kind::minimize,
                            WindowButton::Kind::maximize, WindowButton::Kind::restore}) {
        bar->addWidget(new WindowButton(kind));
        bar->setSpacing(0);
    }
    bar->addSpacing(12);
    const QStringList titles{QStringLiteral("Focus"), QStringLiteral("History"), QStringLiteral("统计"),
                             QStringLiteral("设置")};
    for (const QString& title : titles) {
        auto* tab = new SectionTab;
        tab->setText(title);
        tab->setSelected(title == titles.first());
        if (title == titles.last())
            focusByKeyboard(tab);
        bar->addWidget(tab);
    }
    bar->addStretch();
    auto* logo = new LogoButton;
    bar->addWidget(logo);
    auto* selected = new LogoButton;
    selected->setSelected(true);
    focusByKeyboard(selected);
    bar->addWidget(selected);
}

void addButtons(QVBoxLayout* column, ControlSize size)
{
    for (const auto& [style, tint] : {std::pair{CapsuleStyle::primary, ThemeColor::focus},
                                      std::pair{CapsuleStyle::primary, ThemeColor::breakGreen},
                                      std::pair{CapsuleStyle::secondary, ThemeColor::focus}}) {
        QHBoxLayout* row = addRow(column, 12);
        const auto add = [&](const QString& text, Symbol symbol) {
            auto* button = new CapsuleButton(style, size);
            button->setTint(tint);
            button->setText(text);
            button->setSymbol(symbol);
            row->addWidget(button);
            return button;
        };
        add(QStringLiteral("Start Focus"), Symbol::none);
        add(QStringLiteral("开始专注"), Symbol::none);
        add(QStringLiteral("暂停"), Symbol::pauseFill);
        add(QStringLiteral("Resume"), Symbol::playFill);
        add(QStringLiteral("End"), Symbol::stopFill);
        CapsuleButton* pressed = add(QStringLiteral("Switch"), Symbol::forwardEndFill);
        pressed->setDown(true);
        Q_EMIT pressed->pressed();
        focusByKeyboard(add(QStringLiteral("Focused"), Symbol::playFill));
        add(QStringLiteral("切换"), Symbol::forwardEndFill)->setEnabled(false);
        row->addStretch();
    }
}

void addMetrics(QVBoxLayout* column)
{
    auto* card = new CardSurface(0);
    auto* row = new QHBoxLayout(card);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    struct Metric
    {
        Symbol symbol;
        QString title;
        QString value;
    };
    for (const Metric& metric :
         {Metric{Symbol::timer, QStringLiteral("今日专注"), QStringLiteral("125 分钟")},
          Metric{Symbol::checkmarkCircle, QStringLiteral("Completed"), QStringLiteral("5")},
          Metric{Symbol::flame, QStringLiteral("Current streak"), QStringLiteral("11 days")},
          Metric{Symbol::chartLineUptrendXyaxis, QStringLiteral("完成率"), QStringLiteral("67%")}}) {
        auto* cell = new QWidget;
        auto* lines = new QVBoxLayout(cell);
        lines->setContentsMargins(18, 18, 18, 18);
        lines->setSpacing(7);
        QHBoxLayout* label = addRow(lines, 4);
        label->addWidget(new SymbolView(metric.symbol, 14, ThemeColor::secondaryLabel));
        auto* title = new QLabel(metric.title);
        title->setFont(textFont(TextRole::caption));
        title->setForegroundRole(QPalette::PlaceholderText);
        label->addWidget(title);
        label->addStretch();
        auto* value = new NumericText(systemFont(20, QFont::DemiBold, FontDesign::rounded));
        value->setText(metric.value);
        lines->addWidget(value);
        if (row->count() > 0) {
            auto* rule = new ThinDivider(Qt::Vertical);
            rule->setFixedHeight(46);
            row->addWidget(rule);
        }
        row->addWidget(cell, 1);
    }
    column->addWidget(card);
}

void addMarks(QVBoxLayout* column)
{
    QHBoxLayout* row = addRow(column, 16);
    for (const int size : {24, 38, 96}) {
        row->addWidget(new BrevlinLogoView(size));
        row->addWidget(new PhaseIconView(TimerPhase::focus, size));
        row->addWidget(new PhaseIconView(TimerPhase::shortBreak, size));
    }
    for (const QString& clock : {QStringLiteral("25:00"), QStringLiteral("11:17")}) {
        auto* text = new NumericText(systemFont(54, QFont::DemiBold, FontDesign::rounded));
        text->setText(clock);
        row->addWidget(text);
    }
    row->addStretch();
    column->addWidget(new ThinDivider);
}

std::unique_ptr<QWidget> makeGallery()
{
    auto canvas = std::make_unique<Canvas>();
    auto* column = new QVBoxLayout(canvas.get());
    column->setContentsMargins(24, 24, 24, 24);
    column->setSpacing(18);
    addBar(column);
    addMetrics(column);
    addMarks(column);
    addButtons(column, ControlSize::regular);
    addButtons(column, ControlSize::compact);
    addSymbols(column);
    return canvas;
}

void savePicture(QWidget& widget, double ratio, const QString& path)
{
    QImage image(widget.size() * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    widget.render(&image);
    image.save(path);
}

} // namespace

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    QApplication::setStyle(new BrevlinStyle);
    installFonts();
    const QDir folder(argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("."));
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        QApplication::setPalette(Theme::palette(scheme));
        const std::unique_ptr<QWidget> gallery = makeGallery();
        gallery->adjustSize();
        gallery->setAttribute(Qt::WA_DontShowOnScreen);
        gallery->show();
        const QString name = scheme == ColorScheme::light ? QStringLiteral("light") : QStringLiteral("dark");
        savePicture(*gallery, 1, folder.filePath(name + QStringLiteral("-1x.png")));
        savePicture(*gallery, 2, folder.filePath(name + QStringLiteral("-2x.png")));
    }
    return 0;
}
