#pragma once

#include "platform/layer_surfaces.h"

#include <QWidget>

#include <memory>
#include <vector>

class QScreen;

namespace brevlin {

/// Where windows are laid by the desktop and nobody tells of a click elsewhere, the panel stands on a
/// transparent window that fills its screen, and such a window fills each of the other screens: they hear of
/// every click.
class TrayCurtain final : public QWidget
{
    Q_OBJECT

public:
    explicit TrayCurtain(LayerSurfaces& layers);
    ~TrayCurtain() override;

    /// Shows it with the keyboard, on this screen.
    void raise(QScreen& screen);
    void lower();

Q_SIGNALS:
    void pressed();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void fill(QScreen& screen, LayerSurfaces::Kind kind);

    LayerSurfaces& m_layers;
    std::vector<std::unique_ptr<TrayCurtain>> m_others;
};

} // namespace brevlin
