// payload SOURCES FONTS OUTPUT
// Makes the payload's contents, all but the programs and the list of files, from the sources in SOURCES
// (assets/payload) into the folder OUTPUT, with the packer's list of them, OUTPUT/payload.lst. FONTS is the one folder
// whose fonts are used. Exit code 1, with the first fault on standard error: the list must not be used.
#include "tools/drawing/Drawing.h"
#include "tools/payload/Maker.h"

#include <cstdio>

int main(int argc, char** argv)
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: payload SOURCES FONTS OUTPUT\n");
        return 2;
    }
    const std::filesystem::path sources = argv[1];
    const std::filesystem::path folder = argv[3];
    std::error_code error;
    std::filesystem::remove_all(folder / "Tesk", error); // nothing of an earlier run is left lying in it
    payload::Output output(folder);
    const drawing::Fonts fonts(argv[2], folder / "font-cache");
    if (!fonts.AreThere())
        output.Fail(std::string(argv[2]) + ": no fonts there");
    for (const auto make : { payload::MakeDocuments, payload::MakeHelp, payload::MakeWords, payload::MakeSounds,
                             payload::MakeBackgrounds, payload::MakeIcons })
        make(sources, &output);
    std::string strError;
    if (output.Finish(&strError))
        return 0;
    std::fprintf(stderr, "payload: %s\n", strError.c_str());
    return 1;
}
