#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;

/// Every preference in one scrolling form. Shows what the model holds and changes it through the model only,
/// so that any number of these views agree.
class AppSettingsView final : public QWidget
{
    Q_OBJECT

public:
    explicit AppSettingsView(AppModel& model, QWidget* parent = nullptr);
};

} // namespace brevlin
