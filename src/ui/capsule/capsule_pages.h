#pragma once

#include "app/capsule.h"
#include "ui/capsule/capsule_colors.h"

#include <QWidget>

#include <functional>

namespace brevlin {

/// Tells what a control asks for.
using CapsuleCommandHandler = std::function<void(CapsuleCommand)>;

/// One state of the capsule with its controls. Empty areas leave the pointer to the window behind.
class CapsulePage : public QWidget
{
    Q_OBJECT

public:
    using QWidget::QWidget;

    /// Shows new texts; the controls of a page never change.
    virtual void setTexts(const CapsuleContent& content) = 0;
};

/// Of the capsule's clock.
QFont capsuleClockFont(double points, QFont::Weight weight = QFont::DemiBold);

/// Whether both contents have the same page: the same state, look and controls. Texts may differ.
bool haveSamePage(const CapsuleContent& first, const CapsuleContent& second);

/// The page of a content; a child of the parent. None for the compact timer, which has no controls.
CapsulePage* makeCapsulePage(const CapsuleContent& content, const CapsuleColors& colors,
                             const CapsuleCommandHandler& handler, QWidget* parent);

} // namespace brevlin
