#include "app/model_fixture.h"
#include "platform/status_item.h"
#include "storage/main_window_store.h"
#include "support/plain_desktop.h"
#include "ui/tray/tray.h"
#include "ui/tray/tray_panel_origin.h"

#include <QApplication>

#include <climits>

namespace brevlin {
namespace {

/// Keeps what it was last given, and counts the pictures.
class FakeStatusItem final : public StatusItem
{
public:
    void setPictures(const StatusPictures& value) override
    {
        pictures = value;
        ++pictureChanges;
    }
    void setTexts(const StatusTexts& value) override { texts = value; }
    void setMenu(const std::vector<StatusMenuRow>& value) override { rows = value; }
    bool isSeen() const override { return seen; }
    void setObserver(Observer value) override { observer = std::move(value); }

    StatusPictures pictures;
    StatusTexts texts;
    std::vector<StatusMenuRow> rows;
    Observer observer;
    int pictureChanges = 0;
    bool seen = true;
};

class TrayTest : public test::ModelTest
{
protected:
    TrayTest()
    {
        launch();
        m_extra = std::make_unique<Tray>(model(), m_selection, item, windowSystem, panels);
    }

    std::string menu() const
    {
        std::string text;
        for (const StatusMenuRow& row : item.rows) {
            text += row.isSeparator() ? "-" : row.isEnabled ? "[" + row.text + "]" : row.text;
        }
        return text;
    }

    FakeStatusItem item;
    test::PlainWindowSystem windowSystem;
    test::NoPanels panels;

private:
    MainWindowStore m_store{disk()};
    SectionSelection m_selection{m_store};
    std::unique_ptr<Tray> m_extra;
};

TEST_F(TrayTest, the_item_says_in_words_what_the_timer_does)
{
    const std::string sections = "-[History][Statistics][Settings][About]-[Quit Brevlin]";
    EXPECT_EQ(item.texts.clock, "");
    EXPECT_EQ(item.texts.title, "Brevlin, Focus, 25:00");
    EXPECT_EQ(menu(), "Focus · 25:00-[Open Panel][Start Focus]" + sections);

    item.observer.rowChosen("primaryAction");
    scheduler.advance(Seconds{61});
    EXPECT_EQ(item.texts.clock, "23:59");
    EXPECT_EQ(menu(), "Focus · 23:59-[Open Panel][Pause]" + sections);

    item.observer.rowChosen("primaryAction");
    EXPECT_EQ(item.texts.toolTipDetail, "Focus · 23:59 · Paused");
    model().setAppLanguage(AppLanguage::simplifiedChinese);
    EXPECT_EQ(menu(), "专注 · 23:59 · 已暂停-[打开面板][继续]-[记录][统计][设置][关于]-[退出 Brevlin]");
}

TEST_F(TrayTest, the_picture_changes_with_the_minute_and_the_state_only)
{
    const StatusPictures idle = item.pictures;
    EXPECT_EQ(idle.plain, idle.withClock);
    model().start();
    QApplication::processEvents();
    EXPECT_EQ(item.pictures.plain, idle.plain);
    EXPECT_NE(item.pictures.withClock, idle.withClock);
    for (const StatusPicture& picture : item.pictures.withClock) {
        EXPECT_EQ(picture.pixels.size(), static_cast<std::size_t>(picture.size * picture.size));
    }
    const int before = item.pictureChanges;
    scheduler.advance(Seconds{59.5}); // from 25 to 24 when the first minute is over, not before
    QApplication::processEvents();
    EXPECT_EQ(item.pictureChanges, before);
    scheduler.advance(Seconds{1});
    QApplication::processEvents();
    EXPECT_EQ(item.pictureChanges, before + 1);
    model().pause();
    QApplication::processEvents();
    EXPECT_EQ(item.pictureChanges, before + 2);
    model().switchToNextPhase();
    QApplication::processEvents();
    EXPECT_NE(item.pictures.plain, idle.plain) << "a break";
}

TEST_F(TrayTest, an_item_that_nobody_sees_is_brought_up_to_date_for_the_first_who_does)
{
    item.seen = false;
    model().start();
    QApplication::processEvents();
    const int before = item.pictureChanges;
    scheduler.advance(Seconds{61});
    QApplication::processEvents();
    EXPECT_EQ(item.texts.clock, "25:00");
    item.observer.awaited();
    EXPECT_EQ(item.texts.clock, "23:59");
    EXPECT_EQ(item.pictureChanges, before + 1);
    scheduler.advance(Seconds{10});
    model().pause();
    EXPECT_EQ(item.texts.clock, "23:49");
}

TEST(PanelOrigin, the_panel_lies_beside_its_item_and_inside_the_work_area)
{
    const QRect screen(0, 0, 1280, 900);
    const QRect second(1280, 0, 1000, 800);
    const QSize size(300, 290);
    struct Case
    {
        const char* name;
        QPoint anchor;
        QRect screen;
        QRect workArea;
        QPoint origin;
    };
    const Case cases[] = {
        {"top bar", {600, 15}, screen, {0, 30, 1280, 870}, {450, 36}},
        {"top bar, right corner", {1270, 15}, screen, {0, 30, 1280, 870}, {974, 36}},
        {"bottom bar", {600, 885}, screen, {0, 0, 1280, 870}, {450, 574}},
        {"bottom bar, left corner", {5, 885}, screen, {0, 0, 1280, 870}, {6, 574}},
        {"left bar", {20, 400}, screen, {40, 0, 1240, 900}, {46, 255}},
        {"right bar", {1260, 400}, screen, {0, 0, 1240, 900}, {934, 255}},
        {"a bar that the work area does not know", {600, 15}, screen, screen, {450, 31}},
        {"second screen", {1290, 10}, second, second, {1286, 26}},
        {"beyond all measure", {INT_MIN, INT_MAX}, screen, screen, {6, 593}},
        {"no room", {150, 10}, {0, 0, 200, 200}, {0, 20, 200, 180}, {6, 26}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(panelOrigin(each.anchor, size, each.screen, each.workArea), each.origin) << each.name;
    }
}

TEST(PanelOrigin, without_a_place_from_the_host_the_panel_belongs_to_a_bar)
{
    const QRect screen(0, 0, 1440, 900);
    const QRect belowBar(0, 30, 1440, 870);
    const QRect aboveBar(0, 0, 1440, 860);
    const QRect betweenBars(0, 28, 1440, 844);
    struct Case
    {
        const char* name;
        QRect workArea;
        std::optional<QPoint> pointer;
        QPoint expected;
    };
    const Case cases[] = {
        {"a bar along the top", belowBar, std::nullopt, {1439, 15}},
        {"one along the bottom", aboveBar, std::nullopt, {1439, 879}},
        {"no bar that is known", screen, std::nullopt, {1439, 16}},
        {"a row of a menu below the bar", belowBar, QPoint(1200, 160), {1200, 15}},
        {"a row of a menu above the lower bar", betweenBars, QPoint(900, 700), {900, 885}},
    };
    for (const Case& each : cases) {
        EXPECT_EQ(likelyAnchor(screen, each.workArea, each.pointer), each.expected) << each.name;
    }
    EXPECT_TRUE(canBeOnBar({1300, 880}, screen, aboveBar));
    EXPECT_FALSE(canBeOnBar({1300, 20}, screen, aboveBar)) << "a place on the bar's own surface";
    EXPECT_FALSE(canBeOnBar({14, 15}, screen, belowBar)) << "a place on the icon";
    EXPECT_TRUE(canBeOnBar({1300, 20}, screen, screen)) << "a bar that hides itself";
    EXPECT_FALSE(canBeOnBar({700, 450}, screen, screen));
}

} // namespace
} // namespace brevlin
