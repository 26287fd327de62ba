#pragma once

#include "ui/style/symbol.h"

#include <QString>
#include <QWidget>

namespace brevlin {

/// What a screen shows while it has nothing to show: a large symbol, a title and a sentence, in the middle.
class EmptyStateView final : public QWidget
{
    Q_OBJECT

public:
    explicit EmptyStateView(Symbol symbol, QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& description);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    QString m_title;
    QString m_description;
};

} // namespace brevlin
