// What a history of 100,000 records costs on the screen: opening it, scrolling it, and the memory that it
// takes.

#include "long_history.h"
#include "report.h"
#include "ui/controls/brevlin_style.h"
#include "ui/screens/history/history_list.h"
#include "ui/screens/history/history_view.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QScrollBar>

#include <malloc.h>

#include <cstdlib>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int openings = 9;
constexpr int frames = 400;
constexpr int frameStep = 137; // points; no multiple of a row

double heapMegabytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / 1e6;
}

std::unique_ptr<HistoryView> open(AppModel& model)
{
    auto view = std::make_unique<HistoryView>(model);
    view->resize(920, 600);
    view->show();
    QApplication::processEvents();
    view->repaint();
    return view;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argumentCount, arguments);
    QApplication::setStyle(new BrevlinStyle);
    QApplication::setPalette(Theme::palette(ColorScheme::light));
    LongHistory history;
    open(history.model()); // fonts and symbols are loaded once, whatever the history

    const double before = heapMegabytes();
    std::unique_ptr<HistoryView> view = open(history.model());
    const double memory = heapMegabytes() - before;
    std::vector<double> times;
    for (int turn = 0; turn < openings; ++turn) {
        view.reset();
        times.push_back(seconds([&] { view = open(history.model()); }));
    }
    constexpr double openingGoal = 8;
    const double opening = median(times) * 1e3;
    printRow("opening the history, 100,000 records", number("%.2f ms", opening),
             number("%.1f ms", openingGoal), opening <= openingGoal, "");

    auto* list = view->findChild<HistoryList*>();
    std::vector<double> paints;
    for (int frame = 0; frame < frames; ++frame) {
        paints.push_back(seconds([&] {
            list->verticalScrollBar()->setValue(list->verticalScrollBar()->value() + frameStep);
            list->viewport()->repaint();
        }));
    }
    if (list->verticalScrollBar()->value() != frames * frameStep) {
        std::fputs("history_screen_bench: the list did not scroll\n", stderr);
        return EXIT_FAILURE;
    }
    constexpr double frameGoal = 8;
    const double slowest = *std::max_element(paints.begin(), paints.end()) * 1e3;
    printRow("scrolling it, the slowest of 400 frames", number("%.2f ms", slowest),
             number("%.1f ms", frameGoal), slowest <= frameGoal,
             "median " + number("%.2f ms", median(paints) * 1e3));
    constexpr double memoryGoal = 5;
    printRow("memory of the open history", number("%.2f MB", memory), number("%.1f MB", memoryGoal),
             memory <= memoryGoal, "");
    return EXIT_SUCCESS;
}
