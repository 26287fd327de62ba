#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/symbol.h"

namespace brevlin {

/// A row of the about screen that leads out of the program. Its text is its title; the detail stands at its
/// end. It highlights as a whole, with the round corners of the card where it lies at an end of it.
class AboutRow final : public PlainButton
{
    Q_OBJECT

public:
    AboutRow(Symbol symbol, Qt::Edges cardEdges, QWidget* parent = nullptr);

    QAccessible::Role role() const override { return QAccessible::Link; }
    void setDetail(const QString& detail);
    QSize sizeHint() const override { return {320, 48}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    Qt::Edges m_cardEdges;
    QString m_detail;
};

} // namespace brevlin
