#pragma once

#include <QProgressBar>

namespace brevlin {

/// How much of something is done, as a slim capsule that fills; 0 to maximum(). Its accessible name says of
/// what.
class ProgressBar final : public QProgressBar
{
    Q_OBJECT

public:
    static constexpr int thickness = 6;

    explicit ProgressBar(QWidget* parent = nullptr);

    QSize sizeHint() const override { return {thickness, thickness}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace brevlin
