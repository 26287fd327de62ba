#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/symbol.h"

namespace brevlin {

/// A symbol alone in a square of 28 points, all of which can be pressed. Its text is its accessible name.
class SymbolButton final : public PlainButton
{
    Q_OBJECT

public:
    explicit SymbolButton(Symbol symbol, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {28, 28}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
};

} // namespace brevlin
