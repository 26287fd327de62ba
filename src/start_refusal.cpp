#include "start_refusal.h"

#include "ui/controls/brevlin_style.h"
#include "ui/main/message_dialog.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>

namespace brevlin {

void showStartRefusal(const BilingualText& reason, const std::string& systemsWords)
{
    std::string text = std::string(reason.simplifiedChinese) + "\n" + std::string(reason.english);
    if (!systemsWords.empty()) {
        text += "\n" + systemsWords;
    }
    std::fprintf(stderr, "Brevlin: %s\n", text.c_str());
    installFonts();
    QApplication::setPalette(Theme::palette(Theme::of(QApplication::palette()).scheme()));
    QApplication::setStyle(new BrevlinStyle);
    // Deletes itself when it is closed.
    auto* dialog = new MessageDialog({Uuid::random(), "Brevlin 无法启动 · Brevlin cannot start", text},
                                     AppLanguage::english, nullptr);
    dialog->exec();
}

void refuseWithoutDisplay(QtMsgType type, const QMessageLogContext& /*context*/, const QString& message)
{
    std::fprintf(stderr, "%s\n", qPrintable(message));
    if (type == QtFatalMsg) {
        std::fputs("Brevlin: 无法连接显示器，请在图形桌面中启动。\n"
                   "Brevlin cannot reach the display. Start it within a graphical desktop.\n",
                   stderr);
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace brevlin
