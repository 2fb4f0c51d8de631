// Writes moduleinfo.json: what hosts may read of a module without loading it. Asks the module
// itself, so that the file cannot say anything else. Usage: vst3_module_info MODULE OUTPUT
#include "pluginterfaces/base/ipluginbase.h"
#include "pluginterfaces/base/smartpointer.h"
#include "pluginterfaces/vst/vsttypes.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>

#include <dlfcn.h>

using namespace Steinberg;

namespace {

std::string quoted(const std::string& text) {
    std::string out = "\"";
    for (const char c : text) {
        if (static_cast<unsigned char>(c) < 0x20) continue;
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

std::string hex(const TUID id) {
    std::string out;
    for (int i = 0; i < 16; ++i) {
        char byte[3];
        std::snprintf(byte, sizeof byte, "%02X", static_cast<unsigned>(id[i]) & 0xFF);
        out += byte;
    }
    return out;
}

/// "Fx|Tools" as a list.
std::string listOf(const std::string& categories) {
    std::string out = "[";
    std::size_t at = 0;
    while (at <= categories.size()) {
        const std::size_t end = std::min(categories.find('|', at), categories.size());
        out += (at == 0 ? " " : ", ") + quoted(categories.substr(at, end - at));
        at = end + 1;
    }
    return out + " ]";
}

std::string classOf(const PClassInfo2& info) {
    return "    {\n"
           "      \"CID\": " +
           quoted(hex(info.cid)) +
           ",\n"
           "      \"Category\": " +
           quoted(info.category) +
           ",\n"
           "      \"Name\": " +
           quoted(info.name) +
           ",\n"
           "      \"Vendor\": " +
           quoted(info.vendor) +
           ",\n"
           "      \"Version\": " +
           quoted(info.version) +
           ",\n"
           "      \"SDKVersion\": " +
           quoted(info.sdkVersion) +
           ",\n"
           "      \"Sub Categories\": " +
           listOf(info.subCategories) +
           ",\n"
           "      \"Class Flags\": " +
           std::to_string(info.classFlags) +
           ",\n"
           "      \"Cardinality\": " +
           std::to_string(info.cardinality) +
           ",\n"
           "      \"Snapshots\": []\n"
           "    }";
}

std::string moduleInfo(IPluginFactory2& factory) {
    PFactoryInfo maker;
    if (factory.getFactoryInfo(&maker) != kResultOk || factory.countClasses() < 1)
        throw std::runtime_error("the module has no classes");
    std::string classes;
    PClassInfo2 info;
    for (int32 i = 0; i < factory.countClasses(); ++i) {
        if (factory.getClassInfo2(i, &info) != kResultOk)
            throw std::runtime_error("a class without data");
        classes += (i == 0 ? "" : ",\n") + classOf(info);
    }
    return "{\n"
           "  \"Name\": " +
           quoted(info.name) +
           ",\n"
           "  \"Version\": " +
           quoted(info.version) +
           ",\n"
           "  \"Factory Info\": {\n"
           "    \"Vendor\": " +
           quoted(maker.vendor) +
           ",\n"
           "    \"URL\": " +
           quoted(maker.url) +
           ",\n"
           "    \"E-Mail\": " +
           quoted(maker.email) +
           ",\n"
           "    \"Flags\": {\n"
           "      \"Unicode\": true,\n"
           "      \"Classes Discardable\": false,\n"
           "      \"Component Non Discardable\": false\n"
           "    }\n"
           "  },\n"
           "  \"Compatibility\": [],\n"
           "  \"Classes\": [\n" +
           classes +
           "\n  ]\n"
           "}\n";
}

std::string askModule(const char* path) {
    void* module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) throw std::runtime_error(dlerror());
    const auto entry = reinterpret_cast<GetFactoryProc>(dlsym(module, "GetPluginFactory"));
    if (entry == nullptr) throw std::runtime_error("no GetPluginFactory");
    const IPtr<IPluginFactory> factory = owned(entry());
    const FUnknownPtr<IPluginFactory2> second(factory.get());
    if (!second) throw std::runtime_error("no factory");
    return moduleInfo(*second);
}

} // namespace

int main(int argc, char** argv) {
    try {
        if (argc != 3) throw std::runtime_error("usage: vst3_module_info MODULE OUTPUT");
        const std::string text = askModule(argv[1]);
        std::ofstream file(argv[2], std::ios::binary | std::ios::trunc);
        file << text;
        file.close();
        if (!file) throw std::runtime_error(std::string("cannot write ") + argv[2]);
        return 0;
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "vst3_module_info: %s\n", problem.what());
        return 1;
    }
}
