#pragma once

#include <QAccessible>
#include <QString>
#include <QWidget>

#include <functional>

namespace brevlin {

/// Makes the widget and all it contains one element for assistive technology, whose name is asked for when it
/// is wanted: a countdown that set its name every second would be read aloud every second. Without a name it
/// is decoration, which nothing is said of.
void makeSpokenElement(QWidget& widget, QAccessible::Role role, std::function<QString()> name);

/// The same for a widget whose children are elements of their own.
void makeSpokenGroup(QWidget& widget, QAccessible::Role role, std::function<QString()> name,
                     std::function<QString()> description = {});

/// Says the text once, wherever the keyboard is.
void announce(QWidget& widget, const QString& text);

/// All that can be read in the widget at the moment, but for the titles of controls.
QString readableText(QWidget& widget);

} // namespace brevlin
