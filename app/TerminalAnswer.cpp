#include "app/TerminalAnswer.h"

std::string TerminalAnswer(const std::vector<std::string>& arguments) {
    const std::string option = arguments.size() > 1 ? arguments[1] : "";
    if (option == "--version") {
        return "Klipra " KLIPRA_VERSION "\n";
    }
    if (option != "--help") {
        return "";
    }
    return "Usage: klipra FILE\n"
           "       klipra --choose [FILE]\n"
           "Opens an MP3 or PCM WAV file in a window, to cut it without re-encoding.\n"
           "FILE is only read.\n"
           "\n"
           "  --choose   without a FILE, ask for one in a panel\n"
           "  --help     tell this, and end\n"
           "  --version  tell the version, and end\n"
           "\n"
           "KLIPRA_LANGUAGE=en has the window speak English for this run, ja Japanese.\n"
           "See klipra(1); klipra-cli(1) does the same work without a window.\n";
}
