// Comparison, order and equality of texts. Hashes have the type size_t, so only their equality counts.
#include "Digest/Digest.h"
#include "Digest/Samples.h"

#include "Vorn/Text/Name.h"
#include "Vorn/Text/TextOrder.h"
#include "Vorn/Text/TextSearch.h"

#include <algorithm>
#include <map>

using Vorn::String;

void digestOrders(Digest& digest) {
    std::vector<String> strings = sampleStrings();
    const auto sign = [](int order) { return (order > 0) - (order < 0); };
    for (std::size_t i = 0; i < strings.size(); ++i) {
        for (const std::size_t step : {0u, 1u, 2u, 5u, 33u}) {
            const String& a = strings[i];
            const String& b = strings[(i + step) % strings.size()];
            digest.addAll(sign(Vorn::compare(a, b)), Vorn::equals(a, b), Vorn::hashOfText(a) == Vorn::hashOfText(b),
                          sign(Vorn::compareIgnoringASCIICase(a, b)), Vorn::equalsIgnoringASCIICase(a, b));
        }
    }
    std::stable_sort(strings.begin(), strings.end(), Vorn::CodePointLess());
    for (const String& string : strings) digest.add(string);

    std::map<String, int, Vorn::CodePointLess> counts;
    for (const String& string : strings) ++counts[string];
    for (const auto& entry : counts) digest.addAll(entry.first, entry.second);

    const Vorn::Name name("digest"), same(u"digest"), other("digests");
    digest.addAll(name == same, name == other, Vorn::Name::lookUp("no such name").has_value());
    digest.addView(same.getText());
}
