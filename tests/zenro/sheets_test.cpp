// zenro sheets as a script meets it.
#include <gtest/gtest.h>

#include "tests/zenro/program.h"

namespace {

using namespace zm::test;

TEST(Sheets, AreFoundByPositionsAsAFilter) {
    const Program zenro;
    const Outcome r =
        zenro.Run({"sheets", "at", "--scale", "10000"}, "39.375 114.5625 well 7\n# note\nlon=116.25,lat=40\n");
    EXPECT_EQ(r.status, 0) << r.err;
    EXPECT_EQ(r.out, "J50G015010 well 7\nK50G096037\n");
    EXPECT_EQ(zenro.Run({"sheets", "at", "--scale", "500", "--division", "50x50"}, "4845500 614750\n").out,
              "4845.50-614.75\n");
    EXPECT_EQ(zenro
                  .Run({"sheets", "at", "--scale", "1000", "--division", "50x50", "--way", "running", "--area",
                        "0,0,2000,3000", "--prefix", "XX"},
                       "1400 600\n")
                  .out,
              "XX-8\n");
    EXPECT_EQ(zenro.Run({"sheets", "at", "--scale", "500", "--way", "quadrant"}, "20100 61900\n").out,
              "20-60-IV-IV-IV\n");
}

TEST(Sheets, GiveTheirBoxesNeighboursAndCovers) {
    const Program zenro;
    EXPECT_EQ(zenro.Run({"sheets", "of", "J50E001010"}).out,
              "# number scale south west north east\nJ50E001010 50000 39.8333333333 116.25 40 116.5\n");
    EXPECT_EQ(zenro.Run({"sheets", "neighbours"}, "A50D012001\n").out,
              "# number NW N NE W E SW S SE; - where there is none\n"
              "A50D012001 A49D011012 A50D011001 A50D011002 A49D012012 A50D012002 - - -\n");
    EXPECT_EQ(zenro.Run({"sheets", "cover", "39.5", "116", "39.8", "116.5", "--scale", "50000"}).out,
              "J50E002009\nJ50E002010\nJ50E003009\nJ50E003010\n");
    EXPECT_EQ(
        zenro.Run({"sheets", "cover", "1000", "2000", "2000", "2500", "--scale", "1000", "--division", "50x50"}).out,
        "1.5-2.0\n1.0-2.0\n");
}

TEST(Sheets, WhatIsNoneIsToldAndTheRestGoesOn) {
    const Program zenro;
    const Outcome r = zenro.Run({"sheets", "of", "J50E001010", "J61", "J50E01010"});
    EXPECT_EQ(r.status, 4);
    EXPECT_EQ(Count(r.out, "\n"), 2);
    EXPECT_NE(r.err.find("\"J61\": has a row, a column or a zone"), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("\"J50E01010\": has not the form"), std::string::npos) << r.err;
    EXPECT_EQ(zenro.Run({"sheets", "at", "--scale", "20000"}, "39 114\n").status, 2);
    EXPECT_EQ(zenro.Run({"sheets", "at", "--scale", "500"}, "61 114\n").status, 1);
    EXPECT_EQ(zenro.Run({"sheets", "cover", "31", "100", "30", "101", "--scale", "500"}).status, 2);
}

}  // namespace
