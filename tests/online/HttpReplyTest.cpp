// Replies as bytes, cut in every possible place; and what comes from addresses and texts.
#include "online/HttpReply.h"
#include "online/Base64.h"
#include "online/DownloadName.h"
#include "online/UpdateQuery.h"
#include "online/WebAddress.h"

#include <gtest/gtest.h>

namespace Dorna {
namespace {

struct Body final : IBodySink {
    bool write(std::string_view bytes) override { return text += bytes, true; }
    std::string text;
};

struct Read {
    TransferState state;
    std::string body;
    bool cutOff;
};

/// In pieces of `step` bytes, and then the other side closes.
Read read(const std::string& reply, std::size_t step) {
    Body body;
    HttpReplyReader reader(body);
    for (std::size_t at = 0; at < reply.size() && !reader.isOver(); at += step) {
        std::string_view piece = std::string_view(reply).substr(at, step);
        piece.remove_prefix(reader.feed(piece));
        reader.proceed();
        reader.feed(piece);
    }
    reader.end();
    return {reader.state(), body.text, reader.isCutOff()};
}

constexpr auto kFailed = TransferState::kFailed;
constexpr auto kComplete = TransferState::kComplete;

TEST(HttpReply, MeansTheSameHoweverItArrives) {
    const std::string ok = "HTTP/1.1 200 OK\r\n";
    const std::string endless(70000, 'x');
    const std::string full(HttpReplyReader::kMaxLineBytes - 5, 'a'); // with "X: " and line end
    const struct {
        std::string reply;
        Read expected;
    } cases[] = {
        {ok + "Content-Length: 3\r\n\r\nabcdef", {kComplete, "abc", false}},
        {ok + "Content-Length: 3\n\nab", {kComplete, "ab", true}},
        {ok + "Content-Length: 0\r\n\r\n", {kComplete, "", false}},
        {ok + "\r\nabc", {kComplete, "abc", false}},
        {ok + "\r\n" + endless, {kComplete, endless.substr(0, 65000), true}},
        {ok + "X: " + full + "\r\n\r\nabc", {kComplete, "abc", false}},
        {ok + "X: " + full + "a\r\n\r\nabc", {kFailed, "", false}},
        {"HTTP/1.1 204 No\r\nContent-Length: 9\r\n\r\nx", {TransferState::kNoContent, "", false}},
        {"HTTP/1.1 500 No\r\n\r\nabc", {kFailed, "", false}},
        {"HTTP/1.1 OK\r\n\r\nabc", {kFailed, "", false}},
        {"SSH-2.0-OpenSSH\r\n\r\nabc", {kFailed, "", false}},
        {ok + "Content-Length: 3", {kFailed, "", false}},
        {ok + "Content-Length: -1\r\n\r\nabc", {kFailed, "", false}},
        {ok + "Content-Length: 3x\r\n\r\nabc", {kFailed, "", false}},
        {ok + "Content-Length: 268435457\r\n\r\nabc", {kFailed, "", false}},
        {ok + "Content-Length: 99999999999999999999\r\n\r\nabc", {kFailed, "", false}},
        {ok + "Content-Length: 3\r\nContent-Length: 4\r\n\r\nabcd", {kFailed, "", false}},
    };
    for (const auto& c : cases)
        for (const std::size_t step : {1, 2, 7, 16384}) {
            const Read result = read(c.reply, step);
            EXPECT_EQ(result.state, c.expected.state) << c.reply.substr(0, 80) << " by " << step;
            EXPECT_EQ(result.body, c.expected.body) << c.reply.substr(0, 80);
            EXPECT_EQ(result.state == kComplete && result.cutOff, c.expected.cutOff);
        }
    std::string headers = ok;
    while (headers.size() <= HttpReplyReader::kMaxHeaderBytes)
        headers += "X: y\r\n";
    EXPECT_EQ(read(headers + "\r\nabc", 100).state, kFailed);
}

TEST(HttpReply, TellsWhatStandsInTheHeaders) {
    Body body;
    HttpReplyReader reader(body);
    reader.feed("HTTP/1.1 206 Part\r\ntransfer-encoding: chunked\r\n"
                "Content-Disposition: attachment; filename=../a.exe\r\n\r\nabc");
    EXPECT_EQ(reader.state(), TransferState::kHeadersDone);
    EXPECT_EQ(reader.status(), 206);
    EXPECT_TRUE(reader.isEncoded());
    EXPECT_EQ(reader.fileName(), "../a.exe");
    EXPECT_EQ(body.text, "");
}

TEST(UpdateTexts, ValuesEndWithTheirLine) {
    const std::string text =
        "MY_UPDATE=1\r\nPRODUCT_PAGE= a.example/x?URL=no \r\nURL=b.example/c\n";
    std::string value;
    EXPECT_TRUE(findReplyValue(text, "PRODUCT_PAGE", value));
    EXPECT_EQ(value, "a.example/x?URL=no");
    EXPECT_TRUE(findReplyValue(text, "URL", value));
    EXPECT_EQ(value, "b.example/c");
    EXPECT_FALSE(findReplyValue(text, "UPDATE", value));
    EXPECT_TRUE(findReplyValue("A=1;UPDATE=2", "UPDATE", value));
    EXPECT_EQ(value, "2");
    EXPECT_TRUE(findReplyValue("URL=" + std::string(5000, 'x'), "URL", value));
    EXPECT_EQ(value, "");
    EXPECT_EQ(versionText(0x10004), "1.0.4");
    EXPECT_EQ(versionText(0x129937), "12.99.37");
}

TEST(UpdateTexts, OnlyWebAddressesAreFollowed) {
    const WebAddress address = parseWebAddress("HTTP://a.example:81/b/c d");
    EXPECT_EQ(address.host + "|" + std::to_string(address.port) + "|" + address.path,
              "a.example|81|b/c d");
    EXPECT_EQ(parseWebAddress("a.example").port, 80);
    for (const char* bad : {"", "/x", "https://a/b", "a:0/b", "a:65536/", "a:8x/", "a b/", "-x/",
                            "a/b\r\nX: y", "u@a/b", "file:///etc/passwd"})
        EXPECT_EQ(parseWebAddress(bad).host, "") << bad;
    EXPECT_EQ(browserAddress("a.example/b"), "http://a.example/b");
    EXPECT_EQ(browserAddress("https://a.example/b"), "https://a.example/b");
    for (const char* bad : {"", "file:///etc/passwd", "javascript:alert(1)", "--help",
                            "https://http://a/", "smb://a/b", "a/b\n"})
        EXPECT_EQ(browserAddress(bad), "") << bad;
}

TEST(UpdateTexts, DownloadedFilesGetSafeNames) {
    const struct {
        const char* address;
        const char* name;
    } cases[] = {
        {"a/b/Scope 2.exe?key=1/2#x", "Scope 2.exe"},
        {"a/Gr%C3%B6%C3%9Fe%20%zz.zip", "Größe %zz.zip"},
        {"a/..%2F..%2Fx.sh", "_.._x.sh"},
        {"a/.bashrc", "bashrc"},
        {"a/..", "update"},
        {"", "update"},
        {"a/x%00%0Ay\xFF.exe", "x  y\xEF\xBF\xBD.exe"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(fileNameOfAddress(c.address), c.name) << c.address;
    const std::string shortened = fileNameOfAddress("a/" + std::string(5000, 'x') + ".tar");
    EXPECT_EQ(shortened.size(), 200u);
    EXPECT_TRUE(shortened.ends_with("x.tar"));
}

TEST(Base64, AgreesWithTheStandardsExamples) {
    // RFC 4648, section 10.
    EXPECT_EQ(encodeBase64("f"), "Zg==");
    EXPECT_EQ(encodeBase64("fo"), "Zm8=");
    EXPECT_EQ(encodeBase64("foobar"), "Zm9vYmFy");
    EXPECT_EQ(encodeBase64("\xFB\xFF\xFE"), "+//+");
}

} // namespace
} // namespace Dorna
