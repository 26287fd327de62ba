#pragma once

#include "ui/style/symbol.h"

#include <QString>
#include <QWidget>

namespace brevlin {

/// One figure: a symbol and a title above a value that shrinks when it is too long. One element for assistive
/// technology.
class MetricView final : public QWidget
{
    Q_OBJECT

public:
    explicit MetricView(Symbol symbol, QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& value);
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QString m_title;
    QString m_value;
};

} // namespace brevlin
