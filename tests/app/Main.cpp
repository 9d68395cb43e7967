#include "app/PrepareApplication.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char* argv[]) {
    testing::InitGoogleTest(&argc, argv);
    // Nobody sees or hears the tests.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("SDL_AUDIODRIVER", "dummy");
    // What real sessions have left is none of their business, nor what a person has chosen.
    const TemporaryFolder folder;
    qputenv("XDG_STATE_HOME", folder.Path("state").c_str());
    qputenv("XDG_CONFIG_HOME", folder.Path("config").c_str());
    qunsetenv("KLIPRA_LANGUAGE");
    QApplication application(argc, argv);
    PrepareApplication();
    return RUN_ALL_TESTS();
}
