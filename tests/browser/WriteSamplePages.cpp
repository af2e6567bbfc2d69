// Writes the sample pages into a folder, for the tests that drive a browser: each as it is, and again with the support for
// browsers of today, its name then ending in "-today".

#include <cstdio>
#include <string>

#include "tests/support/SamplePages.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: sample_pages FOLDER\n", stderr);
        return 2;
    }
    const std::string folder = argv[1];
    for (const Sample& sample : SamplePages())
        for (const bool support : {false, true}) {
            SamplePage page(support);
            page.SetFilename((folder + '/' + sample.name + (support ? "-today.html" : ".html")).c_str());
            sample.write(page);
            page.CommitFile();
        }
    return 0;
}
