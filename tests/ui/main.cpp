#include "ui/controls/brevlin_style.h"
#include "ui/style/typography.h"

#include <QApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    brevlin::installFonts();
    QApplication::setStyle(new brevlin::BrevlinStyle);
    return RUN_ALL_TESTS();
}
