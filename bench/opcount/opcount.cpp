// The instruction-count driver: runs one of varion's core operations a given
// number of times, on the inputs of the benchmarks, and prints the heap
// allocations the loop made per operation.
//
//   varion_opcount --list             the operations, one "family/operation" a line
//                                     ("baseline/nothing" first: the loop alone)
//   varion_opcount <operation> <n>    runs it n times: "allocations 0"
//
// bench/run-peers.sh runs each operation under valgrind --tool=callgrind with
// two counts and takes the difference of the instruction totals, so that the
// program's start and end drop out: instructions per operation, the same on
// every run of the same build.
#include "barriers.h"
#include "inputs.h"
#include "support/counting_new.h"

#include <varion/varion.h>

#include "datetime/datetime.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>
#include <string>
#include <vector>

namespace {


struct Operation {
    std::string name;
    std::function<void()> run;
};

template <VARTYPE To, class Read, class Source>
std::function<void()> Convert(Source source) {
    return [source]() mutable {
        bench::Launder(source);
        CVarion v(source);
        const long code = v.SetType(To);
        bench::Keep(code);
        if (code == RC_OK) bench::Keep(static_cast<Read>(v));
    };
}

template <class Read>
std::function<void()> ReadText(const char* text) {
    return [v = CVarion(text)] { bench::Keep(static_cast<Read>(v)); };
}

std::vector<Operation> Operations() {
    std::vector<Operation> ops;
    // The loop and the call alone, subtracted from every other count.
    ops.push_back({"baseline/nothing", [] {}});
    ops.push_back({"numeric/VT_I4 to VT_R8", Convert<VT_R8, double>(bench::kI4Source)});
    ops.push_back({"numeric/VT_R8 to VT_I2", Convert<VT_I2, short>(bench::kR8ForI2)});
    ops.push_back(
        {"numeric/VT_UI8 to VT_I8 (fails)", Convert<VT_I8, LONGLONG>(static_cast<ULONGLONG>(bench::kUI8AboveI8))});

    for (const bench::NumberText& input : bench::kTextsToR8)
        ops.push_back({"text/" + bench::TextOperation(input, "to VT_R8"), ReadText<double>(input.text)});
    for (double x : bench::kR8ToText) {
        ops.push_back({"text/" + bench::ValueOperation("VT_R8", x, "to text"), [x]() mutable {
                           bench::Launder(x);
                           CVarion v(x);
                           bench::Keep(v.SetType(VT_BSTR));
                           bench::Keep(v);
                       }});
    }
    for (const bench::NumberText& input : bench::kTextsToI4)
        ops.push_back({"text/" + bench::TextOperation(input, "to VT_I4"), ReadText<long>(input.text)});

    const CVarion real(2.5);
    const CVarion text(bench::kString32);
    ops.push_back({"copy/copy VT_R8 (the copy constructor)", [real, slot = CVarion()]() mutable {
                       new (&slot) CVarion(real);  // over a value without content: nothing to release
                       bench::Keep(slot);
                   }});
    ops.push_back({"copy/copy and destroy VT_R8", [real] {
                       CVarion copy(real);
                       bench::Keep(copy);
                   }});
    ops.push_back({"copy/assign VT_R8", [real, target = CVarion()]() mutable {
                       target = real;
                       bench::Keep(target);
                   }});
    ops.push_back({"copy/copy and destroy VT_BSTR of 32 characters", [text] {
                       CVarion copy(text);
                       bench::Keep(copy);
                   }});
    ops.push_back({"copy/assign VT_BSTR of 32 characters", [text, target = CVarion()]() mutable {
                       target = text;
                       bench::Keep(target);
                   }});

    ops.push_back({"ops/VT_I4 == VT_I4", [a = CVarion(5), b = CVarion(5)] { bench::Keep(a == b); }});
    ops.push_back({"ops/VT_R8 == VT_R8", [a = CVarion(2.5), b = CVarion(2.5)] { bench::Keep(a == b); }});
    ops.push_back({"ops/ADD VT_I4 + VT_I4", [a = CVarion(5), b = CVarion(7), r = CVarion()]() mutable {
                       CVarion::ADD(r, a, b);
                       bench::Keep(r);
                   }});

    const auto display = [](CVarion value, const OLECHAR* format) {
        return [value, f = CString(format)] { bench::Keep(value.GetStringWithDisplayFormat(f, 0)); };
    };
    ops.push_back({"format/\"%.2f\" of VT_R8 3.14159", display(CVarion(bench::kDisplayReal), OLESTR("%.2f"))});
    for (const int x : {bench::kDisplaySmall, bench::kDisplayLarge})
        ops.push_back({"format/\"%X\" of VT_I4 " + std::to_string(x), display(CVarion(x), OLESTR("%X"))});

    ops.push_back({"units/UnitConvert bar to psi (7 to 6), VT_R8",
                   [v = CVarion(bench::kPressure), r = CVarion()]() mutable {
                       bench::Keep(v.UnitConvert(bench::kBar, bench::kPsi, &r));
                       bench::Keep(r);
                   }});

    const bench::Instant& t = bench::kInstant;
    double instant = 0;
    varion::detail::DateFromFields(t.year, t.month, t.day, t.hour, t.minute, t.second, t.millisecond, instant);
    ops.push_back({"dates/FormatDateTime 2026-11-17 20:18:38.250 (de-DE)",
                   [instant] { bench::Keep(varion::detail::FormatDateTime(instant)); }});
    ops.push_back({std::string("dates/ISO date-time parse \"") + bench::kIsoText + "\"",
                   [iso = CString(bench::kIsoText)] {
                       double value = 0;
                       bench::Keep(varion::detail::ParseIsoDateTime(iso, value));
                       bench::Keep(value);
                   }});
    return ops;
}

}  // namespace

int main(int argc, char** argv) {
    // The user locale FormatDateTime and the display formats see.
    setenv("LC_ALL", bench::kUserLocale, 1);
    const std::vector<Operation> ops = Operations();
    if (argc == 2 && std::strcmp(argv[1], "--list") == 0) {
        for (const Operation& op : ops) std::printf("%s\n", op.name.c_str());
        return 0;
    }
    if (argc != 3) {
        std::fprintf(stderr, "usage: varion_opcount --list | varion_opcount <operation> <count>\n");
        return 2;
    }
    const long count = std::strtol(argv[2], nullptr, 10);
    for (const Operation& op : ops) {
        if (op.name != argv[1]) continue;
        const long before = varion::test::AllocationsSoFar();
        for (long i = 0; i < count; ++i) op.run();
        const long made = varion::test::AllocationsSoFar() - before;
        std::printf("allocations %g\n", count > 0 ? static_cast<double>(made) / static_cast<double>(count) : 0.0);
        return 0;
    }
    std::fprintf(stderr, "varion_opcount: no operation \"%s\"\n", argv[1]);
    return 2;
}
