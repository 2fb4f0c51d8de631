// Where PNG bytes come from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <fstream>
#include <string>

namespace Sorel {

class ISorelPNGStream {
  public:
    virtual ~ISorelPNGStream() = default;
    /// Fills `buffer` with the next `length` bytes. A source that has fewer leaves the buffer alone
    /// and says false; the decoder then stops.
    virtual bool read(void* buffer, std::size_t length) = 0;
};

/// An entry of the resource archive that is open. The bytes live until the stream goes.
class PNGNewResourceStream : public ISorelPNGStream {
  public:
    explicit PNGNewResourceStream(const char* name);
    ~PNGNewResourceStream() override;
    PNGNewResourceStream(const PNGNewResourceStream&) = delete;
    PNGNewResourceStream& operator=(const PNGNewResourceStream&) = delete;
    bool isOpen() const { return data_ != nullptr; }
    bool read(void* buffer, std::size_t length) override;

  private:
    const std::byte* data_ = nullptr;
    std::size_t size_ = 0;
    std::size_t position_ = 0;
};

/// A file. Without one, nothing can be read.
class PNGFileStream : public ISorelPNGStream {
  public:
    explicit PNGFileStream(const std::string& utf8Path);
    ~PNGFileStream() override;
    PNGFileStream(const PNGFileStream&) = delete;
    PNGFileStream& operator=(const PNGFileStream&) = delete;
    bool isOpen() const { return file_.is_open(); }
    bool read(void* buffer, std::size_t length) override;

  private:
    std::ifstream file_;
};

} // namespace Sorel
