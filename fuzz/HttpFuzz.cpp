// Replies from anywhere: however their bytes are parted the reader says the same, never hands on
// more than it may, and what update texts and addresses are made of them is safe to use.
//
// The first byte of the input says how large the pieces are.
#include "online/DownloadName.h"
#include "online/HttpReply.h"
#include "online/UpdateQuery.h"
#include "online/WebAddress.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <tuple>

namespace {

using namespace Dorna;

void require(bool condition) {
    if (!condition) std::abort();
}

struct Body final : IBodySink {
    bool write(std::string_view bytes) override {
        require(!bytes.empty());
        return text += bytes, true;
    }
    std::string text;
};

auto read(std::string_view reply, std::size_t step) {
    Body body;
    HttpReplyReader reader(body);
    for (; !reply.empty() && !reader.isOver(); reply.remove_prefix(std::min(step, reply.size()))) {
        std::string_view piece = reply.substr(0, step);
        piece.remove_prefix(reader.feed(piece));
        reader.proceed();
        reader.feed(piece);
    }
    reader.end();
    require(reader.isOver());
    require(reader.received() == static_cast<std::int64_t>(body.text.size()));
    require(reader.received() <= reader.total());
    require(reader.total() <= HttpReplyReader::kMaxBodyBytes);
    require(reader.fileName().size() <= HttpReplyReader::kMaxFileNameBytes);
    if (reader.state() == TransferState::kComplete)
        require(reader.status() >= 200 && reader.status() <= 299);
    return std::tuple(reader.state(), reader.status(), reader.isCutOff(), body.text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string reply(reinterpret_cast<const char*>(data) + 1, size - 1);
    const auto inPieces = read(reply, std::size_t{data[0]} + 1);
    require(inPieces == read(reply, reply.size() + 1));

    const std::string& text = std::get<3>(inPieces);
    std::string value;
    for (const char* key : {"PRODUCT_PAGE", "UPDATE", "URL"}) {
        findReplyValue(text, key, value);
        require(value.size() <= kMaxReplyValueBytes);
        require(value.find_first_of("\r\n") == std::string::npos);
        const std::string browser = browserAddress(value);
        require(browser.empty() || browser.find("://") != std::string::npos);
        const std::string name = fileNameOfAddress(parseWebAddress(value).path);
        require(!name.empty() && name.size() <= 200 && name.front() != '.');
        require(name.find('/') == std::string::npos && name.find('\0') == std::string::npos);
    }
    return 0;
}
