#include "online/HttpReply.h"

#include "core/NumberText.h"

#include <algorithm>
#include <charconv>

namespace Dorna {

namespace {
constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kFileName = "filename=";

std::string_view takeWord(std::string_view& text) {
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    const std::string_view word = text.substr(0, text.find_first_of(kBlanks));
    text.remove_prefix(word.size());
    return word;
}

/// A number without sign that fills the whole word; -1 for anything else.
std::int64_t wholeNumber(std::string_view word) {
    std::int64_t number = 0;
    const char* const end = word.data() + word.size();
    const auto [rest, error] = std::from_chars(word.data(), end, number);
    return error == std::errc() && rest == end && number >= 0 ? number : -1;
}
} // namespace

bool HttpReplyReader::isOver() const {
    return state_ == TransferState::kFailed || state_ == TransferState::kNoContent ||
           state_ == TransferState::kComplete;
}

bool HttpReplyReader::isCutOff() const {
    return announced_ >= 0 ? received_ < announced_ : received_ >= kUnannouncedBytes;
}

std::size_t HttpReplyReader::feed(std::string_view bytes) {
    std::size_t taken = 0;
    while (taken < bytes.size() && state_ == TransferState::kReadingHeaders)
        takeHeaderByte(bytes[taken++]);
    if (state_ == TransferState::kReadingBody) taken += takeBody(bytes.substr(taken));
    return taken;
}

void HttpReplyReader::takeHeaderByte(char byte) {
    if (line_.size() == kMaxLineBytes || ++headerBytes_ > kMaxHeaderBytes) return fail();
    line_ += byte;
    if (byte != '\n') return;
    // "\r\n"; some servers leave the carriage return out.
    if (line_.size() <= 2)
        headersEnded();
    else
        takeLine();
    line_.clear();
}

void HttpReplyReader::takeLine() {
    std::string_view rest(line_);
    rest.remove_suffix(1);
    const std::string_view first = takeWord(rest);
    const std::string_view second = takeWord(rest);
    if (first.starts_with("HTTP")) return takeStatus(second);
    if (first == "Content-Length:") return takeLength(second);
    const std::string name(first);
    if (Core::equalsIgnoringCase(name.c_str(), "Transfer-Encoding:") ||
        Core::equalsIgnoringCase(name.c_str(), "Content-Encoding:"))
        encoded_ = second != "identity";
    const std::string_view third = takeWord(rest);
    if (third.starts_with(kFileName)) fileName_ = third.substr(kFileName.size(), kMaxFileNameBytes);
}

void HttpReplyReader::takeStatus(std::string_view word) {
    const std::int64_t status = wholeNumber(word);
    status_ = status > 0 && status <= 999 ? static_cast<int>(status) : 0;
    if (status_ < 200 || status_ > 299)
        fail();
    else if (status_ == 204)
        state_ = TransferState::kNoContent;
}

void HttpReplyReader::takeLength(std::string_view word) {
    const std::int64_t length = wholeNumber(word);
    const bool contradicts = announced_ >= 0 && announced_ != length;
    if (length < 0 || length > kMaxBodyBytes || contradicts) return fail();
    announced_ = length;
}

void HttpReplyReader::headersEnded() {
    if (status_ == 0) return fail(); // whatever this is, it is no HTTP
    total_ = announced_ >= 0 ? announced_ : kUnannouncedBytes;
    state_ = TransferState::kHeadersDone;
}

void HttpReplyReader::proceed() {
    if (state_ != TransferState::kHeadersDone) return;
    state_ = total_ == 0 ? TransferState::kComplete : TransferState::kReadingBody;
}

std::size_t HttpReplyReader::takeBody(std::string_view bytes) {
    bytes = bytes.substr(0, static_cast<std::size_t>(total_ - received_));
    if (!bytes.empty() && !body_.write(bytes)) {
        fail();
        return 0;
    }
    received_ += static_cast<std::int64_t>(bytes.size());
    if (received_ == total_) state_ = TransferState::kComplete;
    return bytes.size();
}

void HttpReplyReader::end() {
    if (state_ == TransferState::kReadingBody)
        state_ = TransferState::kComplete;
    else if (!isOver())
        fail();
}

} // namespace Dorna
