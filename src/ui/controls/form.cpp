#include "ui/controls/form.h"

#include "ui/controls/link_button.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QTextLayout>
#include <QVBoxLayout>

#include <cmath>

namespace brevlin {

namespace {

constexpr int lineHeight = 30;
constexpr int verticalPadding = 8;
constexpr int noteGap = 1;
constexpr int symbolSize = 18;
constexpr int noteSymbolSize = 14;
constexpr int headingGap = 9;
constexpr int symbolNoteGap = 5;  // below a note that asks for attention
constexpr int contentNoteGap = 5; // from a button to its note

int lineHeightOf(const QFont& font)
{
    return static_cast<int>(std::ceil(QFontMetricsF(font).height()));
}

QStringList brokenIntoLines(const QString& text, const QFont& font, int width)
{
    QTextLayout layout(text, font);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines << text.mid(line.textStart(), line.textLength());
    }
    layout.endLayout();
    return lines;
}

} // namespace

FormLabel::FormLabel(const QFont& font, ThemeColor color, QWidget* parent) : QLabel(parent), m_color(color)
{
    setTextFormat(Qt::PlainText);
    setFont(font);
}

QSize FormLabel::sizeHint() const
{
    const int width = static_cast<int>(std::ceil(QFontMetricsF(font()).horizontalAdvance(text())));
    return {width, lineHeightOf(font())};
}

QSize FormLabel::minimumSizeHint() const
{
    return wordWrap() ? QSize(0, lineHeightOf(font())) : sizeHint();
}

int FormLabel::heightForWidth(int width) const
{
    if (!wordWrap())
        return -1;
    return lineHeightOf(font()) * static_cast<int>(brokenIntoLines(text(), font(), width).size());
}

void FormLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setFont(font());
    painter.setPen(Theme::of(*this).color(isEnabled() ? m_color : ThemeColor::tertiaryLabel));
    if (!wordWrap()) {
        drawTextOnBaseline(painter, rect(), Qt::AlignLeft, text());
        return;
    }
    QRectF line(0, 0, width(), lineHeightOf(font()));
    for (const QString& each : brokenIntoLines(text(), font(), width())) {
        drawTextOnBaseline(painter, line, Qt::AlignLeft, each);
        line.translate(0, line.height());
    }
}

FormNote::FormNote(Symbol symbol, ThemeColor color, QWidget* parent)
    : QWidget(parent), m_label(new FormLabel(textFont(TextRole::caption), color, this))
{
    m_label->setWordWrap(true);
    auto* line = new QHBoxLayout(this);
    line->setContentsMargins(0, 0, 0, 0);
    line->setSpacing(6);
    if (symbol != Symbol::none) {
        line->addWidget(new SymbolView(symbol, noteSymbolSize, color, this), 0, Qt::AlignTop);
        line->setContentsMargins(0, 0, 0, symbolNoteGap);
    }
    line->addWidget(m_label, 1);
}

void FormNote::setText(const QString& text)
{
    m_label->setText(text);
}

FormRow::FormRow(QWidget* parent) : QWidget(parent), m_column(new QVBoxLayout(this)), m_line(new QHBoxLayout)
{
    applyMargins();
    m_column->setSpacing(noteGap);
    m_line->setSpacing(12);
    m_line->addStrut(lineHeight);
    m_line->addStretch(1);
    m_column->addLayout(m_line);
}

FormLabel& FormRow::title(TextRole role, ThemeColor color)
{
    if (m_title == nullptr) {
        m_title = new FormLabel(textFont(role), color, this);
        m_line->insertWidget(m_symbol != nullptr ? 1 : 0, m_title);
        nameControl();
    }
    return *m_title;
}

void FormRow::setTitle(const QString& text)
{
    title(TextRole::body, ThemeColor::label).setText(text);
}

void FormRow::setCaption(const QString& text)
{
    title(TextRole::caption, ThemeColor::secondaryLabel).setText(text);
}

void FormRow::setSymbol(Symbol symbol, ThemeColor tint)
{
    if (m_symbol == nullptr) {
        m_symbol = new SymbolView(symbol, symbolSize, tint, this);
        m_line->insertWidget(0, m_symbol);
    }
    m_symbol->setSymbol(symbol);
    m_symbol->setTint(tint);
}

void FormRow::setContent(QWidget* content)
{
    m_column->setSpacing(contentNoteGap);
    m_line->insertWidget(0, content,
                         content->sizePolicy().horizontalPolicy() == QSizePolicy::Expanding ? 1000 : 0);
}

void FormRow::addControl(QWidget* control, int bleed)
{
    m_line->addWidget(control);
    m_control = control;
    nameControl();
    m_bleed = bleed;
    applyMargins();
}

// The title belongs to the control, and is read before it and its notes.
void FormRow::nameControl()
{
    if (m_control != nullptr) {
        m_control->lower();
    }
    if (m_title != nullptr) {
        // A button and a text say themselves what they are.
        const bool isNamed = qobject_cast<LinkButton*>(m_control) || qobject_cast<FormLabel*>(m_control);
        m_title->setBuddy(isNamed ? nullptr : m_control);
        m_title->lower();
    }
}

void FormRow::applyMargins()
{
    m_column->setContentsMargins(horizontalPadding, verticalPadding, horizontalPadding - m_bleed,
                                 m_hasNotes ? verticalPadding + 3 : verticalPadding);
}

FormNote* FormRow::addNote(ThemeColor color, Symbol symbol)
{
    auto* note = new FormNote(symbol, color, this);
    m_column->addWidget(note);
    m_hasNotes = true;
    applyMargins();
    return note;
}

void FormRow::paintEvent(QPaintEvent*)
{
    if (parentWidget() == nullptr || y() <= parentWidget()->contentsRect().top())
        return;
    QPainter painter(this);
    const QRectF line = QRectF(rect()).adjusted(horizontalPadding, 0, 0, 0);
    paintHairline(painter, line, Qt::TopEdge, Theme::of(*this).color(ThemeColor::separator));
}

FormSection::FormSection(QWidget* parent)
    : QWidget(parent)
    , m_heading(new FormLabel(textFont(TextRole::body, QFont::DemiBold), ThemeColor::label, this))
    , m_card(new CardSurface(0, this))
    , m_rows(new QVBoxLayout(m_card))
{
    m_rows->setContentsMargins(0, 0, 0, 0);
    m_rows->setSpacing(0);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(CardSurface::shadowMargins.left(), 0, CardSurface::shadowMargins.right(),
                               CardSurface::shadowMargins.bottom());
    column->setSpacing(headingGap);
    makeSpokenElement(*m_heading, QAccessible::Heading, [this] { return m_heading->text(); });
    column->addWidget(m_heading);
    column->addWidget(m_card);
}

void FormSection::setHeading(const QString& heading)
{
    m_heading->setText(heading);
    m_card->setAccessibleName(heading);
}

FormRow* FormSection::addRow()
{
    auto* row = new FormRow(m_card);
    m_rows->addWidget(row);
    return row;
}

} // namespace brevlin
