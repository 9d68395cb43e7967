#include "app/PrepareApplication.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    // Nobody sees or hears the tests.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("SDL_AUDIODRIVER", "dummy");
    QApplication application(argc, argv);
    PrepareApplication();
    return RUN_ALL_TESTS();
}
