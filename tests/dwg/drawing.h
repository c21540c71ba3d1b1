// What the tests of DWG output share: a fresh folder with template and linetype file, sessions in it, and the bytes of
// the files that come out, looked at by plain offsets.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "tests/support/scratch.h"
#include "tests/support/test_host.h"

namespace zm::test {

/// Bytes as hexadecimal digits.
std::string Hex(const std::string& bytes);
/// The bytes of hexadecimal digits; blanks do not count.
std::string FromHex(const std::string& hex);

/// Little-endian bytes of a number.
template <typename T>
std::string Bytes(T value) {
    std::string bytes(sizeof value, '\0');
    auto* raw = reinterpret_cast<const unsigned char*>(&value);
    for (std::size_t i = 0; i < sizeof value; ++i) bytes[i] = static_cast<char>(raw[i]);
    return bytes;
}
inline std::string U16(unsigned value) {
    return Bytes(static_cast<std::uint16_t>(value));
}
inline std::string U32(std::uint32_t value) {
    return Bytes(value);
}
inline std::string F64(double value) {
    return Bytes(value);
}

/// A finished drawing file.
class Drawing {
 public:
    Drawing() = default;
    explicit Drawing(std::string bytes) : m_bytes(std::move(bytes)) {}
    const std::string& bytes() const { return m_bytes; }
    std::size_t size() const { return m_bytes.size(); }

    unsigned u8(std::size_t at) const { return static_cast<unsigned char>(m_bytes.at(at)); }
    unsigned u16(std::size_t at) const { return u8(at) | u8(at + 1) << 8; }
    std::uint32_t u32(std::size_t at) const { return u16(at) | static_cast<std::uint32_t>(u16(at + 2)) << 16; }
    double f64(std::size_t at) const;
    std::string text(std::size_t at) const { return m_bytes.c_str() + at; }

    /// Records of the entity section, by their lengths; a record that does not fit there fails the test.
    std::vector<std::string> Entities() const;
    /// Record i of the table whose address stands in this header field; size is that of a record.
    std::string Record(std::size_t addressField, std::size_t size, std::size_t i) const;
    std::string Block(std::size_t i) const { return Record(50, 37, i); }
    std::string Layer(std::size_t i) const { return Record(60, 37, i); }
    std::string Style(std::size_t i) const { return Record(70, 194, i); }
    std::string Linetype(std::size_t i) const { return Record(80, 187, i); }
    /// Everything from the block section on.
    std::string BlockSection() const { return m_bytes.substr(u32(28)); }

 private:
    std::string m_bytes;
};

/// Checks that entities, tables and block section stand where the header says, without a byte between them; for
/// drawings from the usual template and without a closing record.
void ExpectSound(const Drawing& drawing);

/// What the reader finds wrong with a drawing.
std::vector<std::string> ProblemsOf(const Drawing& drawing);

/// The name of a table record.
std::string NameOf(const std::string& record);

class DrawingTest : public testing::Test {
 protected:
    DrawingTest();
    ~DrawingTest() override;

    /// Opens a session on a file in the folder.
    void Open(std::string name = "out.dwg");
    /// Closes it and reads the file. What was written is proven by the reader, which shares no more than the layout
    /// with the writer.
    Drawing Close();
    /// A part of the one problem that the next drawing closed has on purpose; the test fails if it is not there.
    std::string knownProblem;
    Drawing ReadDrawing(const std::string& name = "out.dwg") const { return Drawing(ReadFile(dir / name)); }
    void Write(const std::string& name, const std::string& bytes) { WriteFile(dir / name, bytes); }
    /// The texts of the boxes that were shown, but for those of the file search.
    std::vector<std::string> Messages() const;
    /// What the process's end was called with while work ran; -1 if it was not.
    template <typename Work>
    int StatusOf(Work work) {
        try {
            work();
        } catch (const ProcessEnded& end) {
            return end.status;
        }
        return -1;
    }

    ScratchDir dir;
    ScopedCurrentDir home{dir.path()};
    TestHost host;
    std::string drawingTemplate;  // the bytes of acad.dwg

 private:
    std::string m_name;
};

/// A call with texts that the writer may change.
void SetLay(std::string name);
void SetLtype(std::string name);
void SetStyle(int type, std::string name, std::string font, double width = 1.0, double oblique = 0.0);

}  // namespace zm::test
