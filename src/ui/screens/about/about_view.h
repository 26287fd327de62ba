#pragma once

#include <QWidget>

class QLabel;

namespace brevlin {

class AboutRow;
class AppModel;

/// The logo, the name and the version, and three rows that open the product's site or a mail to its makers.
class AboutView final : public QWidget
{
    Q_OBJECT

public:
    explicit AboutView(AppModel& model, QWidget* parent = nullptr);

private:
    void refresh();

    AppModel& m_model;
    QLabel* m_version; // these are owned by this widget
    AboutRow* m_updates;
    AboutRow* m_contact;
    AboutRow* m_website;
};

} // namespace brevlin
