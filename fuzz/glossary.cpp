// Compares the marked terms with those of a reference implementation.

#include "fuzz/FuzzInput.h"
#include "qvcommon/CodePage.h"
#include "tests/support/GlossaryRules.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzInput input(data, size);
    _setmbcp(1252);  // the reference implementation computes an occurrence's length from its term
    CStringArray terms, explanations;
    for (int n = input.Flag() ? 3 : 8; n > 0; --n) {
        terms.Add(input.Text());
        explanations.Add("<" + terms[0] + ">");
    }
    const std::string_view text = input.Rest().substr(0, 2000);
    Require(CHtmlWriter::GetGlossarizedText(text, terms, explanations) ==
                qv::test::MarkTermByTerm(text, terms, explanations),
            "marked by the rules");
    return 0;
}
