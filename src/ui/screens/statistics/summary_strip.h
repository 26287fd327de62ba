#pragma once

#include "core/language.h"
#include "core/statistics_calculator.h"
#include "ui/controls/card_surface.h"
#include "ui/style/symbol.h"

#include <QWidget>

#include <array>

namespace brevlin {

class NumericText;

/// A title after a symbol, and below it a figure whose digits cross-fade. One element for assistive
/// technology.
class SummaryMetric final : public QWidget
{
    Q_OBJECT

public:
    explicit SummaryMetric(Symbol symbol, QWidget* parent = nullptr);

    void setTexts(const QString& title, const QString& value);
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QRect titleRect() const;

    Symbol m_symbol;
    QString m_title;
    NumericText* m_value; // owned by this widget
};

/// Four figures of a period in a card.
class SummaryStrip final : public CardSurface
{
    Q_OBJECT

public:
    explicit SummaryStrip(QWidget* parent = nullptr);

    void show(const PeriodStatistics& statistics, AppLanguage language);
    using QWidget::show;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::array<SummaryMetric*, 4> m_metrics; // owned by this widget
};

} // namespace brevlin
