// Block files for tests, formed from records by hand.
#pragma once

#include <string>
#include <vector>

#include "tests/dwg/drawing.h"

namespace zm::test {

struct BlockFile {
    struct Layer {
        std::string name;
        unsigned color;  // as 16 bits: that of a layer that is off is negative
        unsigned linetype;
        unsigned flag = 0x40;
    };
    struct Block {
        std::string name;
        std::string records;  // from BLOCK to ENDBLK
    };

    int version = 1006;
    double baseX = 0.0;
    double baseY = 0.0;
    std::vector<Layer> layers = {{"0", 7, 0}};
    std::vector<std::string> styles = {"STANDARD"};
    std::vector<std::string> linetypes = {"CONTINUOUS", "1", "DASHED"};
    std::vector<Block> blocks;
    std::string entities;

    bool later() const { return version >= 1009; }
    /// One record with its length; a file of a later version has two bytes behind the body.
    std::string Record(int kind, int flags, const std::string& body, unsigned layer = 0, unsigned options = 0) const;
    /// A reference to a block of the file, whose number has four bytes and whose length counts two of them.
    std::string Reference(unsigned number, double x, double y) const;
    /// BLOCK at (0, 0), these records, ENDBLK.
    std::string Definition(const std::string& records) const;
    std::string Bytes() const;
};

}  // namespace zm::test
