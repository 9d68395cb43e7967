#include "places/AudacityLabels.h"
#include "places/CsvTable.h"
#include "places/CueSheet.h"
#include "places/PieceStarts.h"
#include "places/PlaceList.h"
#include "places/PrintableText.h"

#include <gtest/gtest.h>

#include <numeric>
#include <sstream>

namespace {

// The places as "seconds title", an end as "seconds |"; what is wrong where something is.
std::string Parsed(const std::string& bytes) {
    std::ostringstream text;
    try {
        for (const ListedPlace& place : ParsePlaceList(bytes)) {
            text << place.seconds << (place.isEnd ? " |" : " " + place.title) << "; ";
        }
    } catch (const ListError& e) {
        return e.what();
    }
    return text.str();
}

TEST(PlaceList, ReadsEveryKindInEveryEncoding) {
    const std::pair<std::string, std::string> cases[] = {
        {"FILE \"a.wav\" WAVE\r\n  TRACK 01 AUDIO\r\n    TITLE \"One: \xE6\x9B\xB2\"\r\n"
         "    INDEX 01 00:00:00\r\n  TRACK 02 AUDIO\r\n    INDEX 00 00:58:00\r\n"
         "    INDEX 01 100:59:74\r\n    TITLE Two words \r\n",
         "0 One: \xE6\x9B\xB2; 6059.99 Two words; "},
        {"\xEF\xBB\xBFrem x\ntrack 1 AUDIO\nindex 1 0:2:0\n", "2 ; "},
        {"TITLE \"\x8B\xC8\"\nTRACK 01 AUDIO\nTITLE \x8B\xC8\nINDEX 01 00:00:15",
         "0.2 \xE6\x9B\xB2; "},
        {"\\\t1\t2\n1.5\t1.5\tpoint\n\n2\t3\tregion\n3.0000005\t4.5\n\\\t0\t0\n6\t7\tlast\r\n",
         "1.5 point; 2 region; 3 ; 4.5 |; 6 last; 7 |; "},
        {"bytes,seconds,title\r\n0,1e0,\"a, \"\"b\"\"\nc\"\r\n,2,d\n\n0,3\n",
         "1 a, \"b\"\nc; 2 d; 3 ; "},
        {"\"Title\",Seconds,file\nx,7,f.mp3", "7 x; "},
        {"seconds\n", ""},
    };
    for (const auto& [list, places] : cases) {
        EXPECT_EQ(Parsed(list), places) << list;
    }
}

TEST(PlaceList, NamesTheLineThatMakesNoSense) {
    const std::pair<const char*, const char*> cases[] = {
        {"", "line 1: neither a CUE sheet"},
        {"\n\n12 13\n", "line 3: neither a CUE sheet"},
        {"\x81", "line 1: the list is neither UTF-8 nor Shift_JIS"},
        {"TRACK 1\nINDEX 01 0:0:0\nTRACK 2\nTRACK 3", "line 3: the track has no INDEX 01"},
        {"REM\nINDEX 01 00:00:00", "line 2: an INDEX stands before"},
        {"TRACK 1\nINDEX 01 00:60:00", "line 2: '00:60:00' is not minutes"},
        {"TRACK 1\nINDEX 01 00:00:75", "line 2: '00:00:75' is not minutes"},
        {"TRACK 1\nINDEX 01 -1:00:00", "line 2: '-1:00:00' is not minutes"},
        {"TRACK 1\nINDEX 01 00:00:00\nSOUND", "line 3: 'SOUND' is no command"},
        {"TRACK 1\nINDEX 01 1:0:0\nTRACK 2\nINDEX 01 1:0:0",
         "line 4: 60.000000 s does not come after"},
        {"1\t2\na\tb", "line 2: 'a\\tb' is not begin"},
        {"3\t2", "line 1: the label ends before it begins"},
        {"1\t3\n2\t4", "line 2: 2.000000 s does not come after"},
        {"bytes,seconds,title\n1,x,y", "line 2: the column 'seconds' holds no number"},
        {"bytes,seconds,title\n1,-1,y", "line 2: the column 'seconds' holds no number"},
        {"bytes,seconds,title\n1,1,\"y\"z", "line 2: a quoted field is followed by more"},
        {"bytes,seconds,title\n1,1,\"a\nb\"\n1,1,", "line 4: 1.000000 s does not come after"},
        {"bytes,seconds,title\n1,1,\"a", "line 2: a quotation mark is not closed"},
    };
    for (const auto& [list, problem] : cases) {
        EXPECT_EQ(Parsed(list).find(problem), 0U) << list << " gives " << Parsed(list);
    }
}

TEST(PlaceList, ReadsBackWhatIsWritten) {
    const std::vector<double> places = {0.04, 59.999999, 3661.5};
    EXPECT_EQ(Parsed(LabelsText(places, "a\nb")), "0.04 1; 60 2; 3661.5 3; ");
    EXPECT_EQ(Parsed(CsvHeader(true) + CsvRows({{7, 0.04}, {9, 60.0}}, "\"b\".mp3")),
              "0.04 ; 60 ; ");
    EXPECT_EQ(CueSheetText("a\"b.mp3", false, places),
              "FILE \"a_b.mp3\" MP3\n"
              "  TRACK 01 AUDIO\n    INDEX 01 00:00:00\n  TRACK 02 AUDIO\n    INDEX 01 00:00:03\n"
              "  TRACK 03 AUDIO\n    INDEX 01 01:00:00\n  TRACK 04 AUDIO\n    INDEX 01 61:01:38\n");
    std::vector<double> many(99); // from 0, which is where the first track begins anyway
    std::iota(many.begin(), many.end(), 0.0);
    EXPECT_NE(CueSheetText("a", true, many), "");
    many.push_back(99.0);
    EXPECT_EQ(CueSheetText("a", true, many), "");
}

TEST(PieceStarts, LeaveOutNoMoreThanTheyMust) {
    const std::vector<double> places = {1, 5, 6, 11, 14.5, 15, 19};
    EXPECT_EQ(WithoutShortPieces(places, 20, 0), places);
    EXPECT_EQ(WithoutShortPieces(places, 20, 5), (std::vector<double>{5, 11}));
    EXPECT_EQ(WithoutShortPieces(places, 20, 10), (std::vector<double>{}));
    EXPECT_EQ(WithoutShortPieces({0.1, 0.2, 0.3}, 0.4, 0.1).size(), 3U);
}

TEST(PrintableText, EscapesWhatCommandsATerminal) {
    EXPECT_EQ(Printable("a\x1B[2J\n\t\x7F\xC2\x9B\xFF\xE6\x9B\xB2\xED\xA0\x80"),
              "a\\x1b[2J\\n\\t\\x7f\\xc2\\x9b\\xff\xE6\x9B\xB2\\xed\\xa0\\x80");
}

} // namespace
