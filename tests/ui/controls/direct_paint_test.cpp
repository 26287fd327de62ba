#include "ui/controls/brevlin_style.h"
#include "ui/controls/direct_paint.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QPainter>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <vector>

namespace brevlin {
namespace {

/// A blue widget in a window, and what is sent of it.
class DirectPaintTest : public testing::Test
{
public:
    DirectPaintTest()
    {
        part.setGeometry(40, 20, 60, 30);
        window.resize(200, 100);
        window.show();
        QApplication::processEvents();
        style().setPictureSender([this](WId /*window*/, const QImage& picture, const QPoint& place) {
            sent = picture.copy();
            sentTo = place;
            return takes;
        });
    }
    ~DirectPaintTest() override { style().setPictureSender({}); }

    static BrevlinStyle& style() { return *qobject_cast<BrevlinStyle*>(QApplication::style()); }
    bool paint(const QRect& place)
    {
        sent = {};
        return paintDirectly(part, place, [&](QPainter& painter) {
            painter.fillRect(place, Qt::blue);
            painter.fillRect(place.left(), place.top(), 1, 1, Qt::red);
        });
    }

    QWidget window;
    QWidget part{&window};
    QImage sent;
    QPoint sentTo;
    bool takes = true;
};

TEST_F(DirectPaintTest, a_part_is_sent_alone_to_its_place)
{
    ASSERT_TRUE(paint(QRect(5, 6, 10, 8)));
    EXPECT_EQ(sentTo, QPoint(45, 26));
    ASSERT_EQ(sent.size(), QSize(10, 8));
    EXPECT_EQ(sent.pixelColor(0, 0), QColor(Qt::red));
    EXPECT_EQ(sent.pixelColor(9, 7), QColor(Qt::blue));
    takes = false;
    EXPECT_TRUE(paint(QRect(5, 6, 10, 8))) << "sent in Qt's way then";
}

TEST_F(DirectPaintTest, what_is_not_open_to_be_seen_is_left_to_an_update)
{
    const QRect place(5, 6, 10, 8);
    struct Case
    {
        const char* name;
        std::function<void(DirectPaintTest&, QWidget&)> hide;
    };
    const std::vector<Case> cases{
        {"beside the widget",
         [](DirectPaintTest& test, QWidget&) {
             test.part.resize(8, 8);
         }},
        {"beside the window",
         [](DirectPaintTest& test, QWidget&) {
             test.part.move(-8, 0);
         }},
        {"below a sibling",
         [](DirectPaintTest&, QWidget& other) {
             other.setGeometry(0, 0, 48, 30);
         }},
        {"below a child",
         [](DirectPaintTest& test, QWidget& other) {
             other.setParent(&test.part);
             other.setGeometry(0, 0, 7, 7);
         }},
        {"translucent",
         [](DirectPaintTest& test, QWidget&) {
             test.window.setGraphicsEffect(new QGraphicsOpacityEffect);
         }},
        {"hidden",
         [](DirectPaintTest& test, QWidget&) {
             test.part.hide();
         }},
        {"without a sender",
         [](DirectPaintTest&, QWidget&) {
             style().setPictureSender({});
         }},
    };
    for (const Case& hidden : cases) {
        auto* other = new QWidget(&window);
        other->setGeometry(150, 50, 20, 20);
        other->show();
        EXPECT_TRUE(paint(place)) << "before " << hidden.name;
        hidden.hide(*this, *other);
        other->show();
        EXPECT_FALSE(paint(place)) << hidden.name;
        EXPECT_TRUE(sent.isNull()) << hidden.name;
        delete other;
        part.setGeometry(40, 20, 60, 30);
        part.show();
        window.setGraphicsEffect(nullptr);
        QApplication::processEvents();
    }
}

} // namespace
} // namespace brevlin
