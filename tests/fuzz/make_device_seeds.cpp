// Writes what fuzzing begins with: make_device_seeds FOLDER LANGUAGE_TABLES... A folder for each parser of
// fuzz_device.

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <string>
#include <vector>

namespace {

using Seeds = std::map<std::string, std::vector<std::string>>;

const std::string profile = R"({"name":"grey-6","width":758,"height":1024,"dpi":212,"colour":0,"platform":0,
"touch":true,"upside_down":false,"status_height":45,"frontlight":true,"colour_light":false,"levels":16)";

Seeds seeds()
{
    const std::vector<std::string> requests = {
        R"({"id":1,"do":"now"})",
        R"({"id":2,"do":"later","x":"\ud83c\udf04\u0000"})",
        R"({"id":3,"do":"follow"})",
        R"({"id":-9007199254740993,"do":"drag","x1":10,"y1":20.5,"x2":1e300,"steps":null})",
        R"({"id":1,"do":"type","text":"a\n\u00e4","deep":[[[{"a":[]}]]]})",
        "\xff\xfe {",
    };
    std::string lines = "\x7f";
    for (const std::string &request : requests)
        lines += request + '\n';
    return {
        {"configuration",
         {"language=de\nbtkeys.count=2\nbtkeys.bt1.name=x\nbtkeys.bt1.scanCode=0150\ntkey.bt1.0=@KA_next\n",
          "# "
          "note\r\npicviewer_brightness=-150\r\npicviewer_gamma=2147483648\r\na==b\r\r\n=c\nlanguage="
          "en\nlanguage=fr"}},
        {"control_connection", {lines, "\x03" + lines, "\xff" + lines + lines}},
        {"device_record",
         {R"({"profile":"grey-6"})", R"({"profile":"colour-6","orientation":3})",
          R"({"profile":"a\nb\u001b","x":1})"}},
        {"locale_alias",
         {"de\nen en_US.UTF-8\nde de_DE.UTF-8\nde  \tde_AT\n", "zh_CN\nzh_CN\r\nzh_CN zh\r\n", "\n\n a\n"}},
        {"profile",
         {profile + '}',
          profile + R"(,"luminance":{"black":0.05,"white":0.6,"gamma":1.8},"backlight":"mxc_msp430.0"})",
          profile
              + R"(,"luminance":[0,0.1,0.15,0.2,0.25,0.3,0.35,0.4,0.45,0.5,0.55,0.6,0.65,0.7,0.8,1],"a\nb":0})"}},
        {"request_line", requests},
        {"theme",
         {"# In pixels.\ne3.galery_cover.width=220\ne3.galery_cover.height=220\n",
          "e3.galery_cover.width=220\ne3.galery_cover.height=10001\n\x1b\r=2\n"}},
    };
}

std::string contents(const char *path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3) {
        std::cerr << "usage: make_device_seeds FOLDER LANGUAGE_TABLES...\n";
        return 2;
    }
    constexpr std::size_t magicSize = 16; // which the fuzzer puts before each
    Seeds all = seeds();
    for (int i = 2; i < argc; ++i)
        all["language_table"].push_back(contents(argv[i]).substr(magicSize));
    for (const auto &[parser, inputs] : all) {
        const std::filesystem::path folder = std::filesystem::path(argv[1]) / parser;
        std::filesystem::create_directories(folder);
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            std::ofstream file(folder / std::to_string(i), std::ios::binary);
            if (!(file << inputs[i]).flush())
                return 1;
        }
    }
    return 0;
}
