#pragma once

#include "ui/controls/card_surface.h"
#include "ui/style/symbol.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QLabel>
#include <QString>
#include <QWidget>

class QHBoxLayout;
class QVBoxLayout;

namespace brevlin {

/// A text of a form in one of the theme's colours, which follows every change of the theme. Its lines are as
/// high in Chinese as in Latin.
class FormLabel final : public QLabel
{
    Q_OBJECT

public:
    FormLabel(const QFont& font, ThemeColor color, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    ThemeColor m_color;
};

/// What a form says in whole sentences: small, wrapped, after a symbol where it needs attention.
class FormNote final : public QWidget
{
    Q_OBJECT

public:
    FormNote(Symbol symbol, ThemeColor color, QWidget* parent = nullptr);

    void setText(const QString& text);

private:
    FormLabel* m_label; // owned by this widget
};

/// One row of a form: a title at the leading edge, what belongs to it at the trailing one, and notes below.
/// Every row but its card's first begins with a rule.
class FormRow final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int horizontalPadding = 16;

    explicit FormRow(QWidget* parent = nullptr);

    void setTitle(const QString& text);
    /// A note in the title's place.
    void setCaption(const QString& text);
    void setSymbol(Symbol symbol, ThemeColor tint);
    /// In place of a title, taking all the room that it wants. The row owns it.
    void setContent(QWidget* content);
    /// At the trailing edge. The row owns it. What it shows begins `bleed` points within its bounds, which
    /// therefore reach so far into the row's padding.
    void addControl(QWidget* control, int bleed = 0);
    FormNote* addNote(ThemeColor color = ThemeColor::secondaryLabel, Symbol symbol = Symbol::none);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    FormLabel& title(TextRole role, ThemeColor color);
    void nameControl();
    void applyMargins();

    QVBoxLayout* m_column; // these are owned by this widget
    QHBoxLayout* m_line;
    FormLabel* m_title = nullptr;
    SymbolView* m_symbol = nullptr;
    QWidget* m_control = nullptr;
    int m_bleed = 0;
    bool m_hasNotes = false;
};

/// A heading and below it a card of rows. Its bounds leave room for the card's shadow, at the sides and
/// below.
class FormSection : public QWidget
{
    Q_OBJECT

public:
    explicit FormSection(QWidget* parent = nullptr);

    void setHeading(const QString& heading);
    FormRow* addRow();

private:
    FormLabel* m_heading; // these are owned by this widget
    CardSurface* m_card;
    QVBoxLayout* m_rows;
};

} // namespace brevlin
