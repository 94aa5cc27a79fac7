// varion calc A OP B and varion compare A OP B
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

// An operand from its text and an optional --type-a / --type-b.
std::optional<CVarion> Operand(const Args& args, const std::string& text, const char* option, std::string& error) {
    if (const auto name = args.Option(option)) {
        const auto type = ParseType(*name);
        if (!type) {
            error = "unknown type '" + *name + "'";
            return std::nullopt;
        }
        auto value = ParseValue(text, *type);
        if (!value) error = "'" + text + "' is not a " + TypeName(*type) + " value";
        return value;
    }
    return GuessValue(text);
}

enum class Family { Arithmetic, Shift, Relational, Named, Logical };

struct Operation {
    const char* names[3];  // symbol, short name, method name
    Family family;
    int code;              // OP_ADD ..., or an index within the family
};

// clang-format off
constexpr Operation kOperations[] = {
    {{"+",  "add", "ADD"},          Family::Arithmetic, OP_ADD},
    {{"-",  "sub", "SUB"},          Family::Arithmetic, OP_SUB},
    {{"*",  "mul", "MUL"},          Family::Arithmetic, OP_MUL},
    {{"/",  "div", "DIV"},          Family::Arithmetic, OP_DIV},
    {{"%",  "mod", "MOD"},          Family::Arithmetic, OP_MOD},
    {{"<<", "shl", "L_SHIFT"},      Family::Shift, 0},
    {{">>", "shr", "R_SHIFT"},      Family::Shift, 1},
    {{"|",  "or",  "BIT_OR"},       Family::Shift, 2},
    {{"&",  "and", "BIT_AND"},      Family::Shift, 3},
    {{"^",  "xor", "BIT_XOR"},      Family::Shift, 4},
    {{"==", "eq",  "operator=="},   Family::Relational, 0},
    {{"!=", "ne",  "operator!="},   Family::Relational, 1},
    {{"<",  "lt",  "operator<"},    Family::Relational, 2},
    {{"<=", "le",  "operator<="},   Family::Relational, 3},
    {{">",  "gt",  "operator>"},    Family::Relational, 4},
    {{">=", "ge",  "operator>="},   Family::Relational, 5},
    {{"Equal",        "", ""},      Family::Named, 0},
    {{"NotEqual",     "", ""},      Family::Named, 1},
    {{"LittleThen",   "", ""},      Family::Named, 2},
    {{"LittleEqual",  "", ""},      Family::Named, 3},
    {{"GreaterThen",  "", ""},      Family::Named, 4},
    {{"GreaterEqual", "", ""},      Family::Named, 5},
    {{"OR",           "", ""},      Family::Logical, 0},
    {{"AND",          "", ""},      Family::Logical, 1},
};
// clang-format on

const Operation* FindOperation(const std::string& name) {
    for (const Operation& op : kOperations)
        for (const char* n : op.names)
            if (*n != 0 && name == n) return &op;
    return nullptr;
}

bool ReadOperands(const Args& args, const char* command, CVarion& a, CVarion& b, const Operation*& op, int& status) {
    if (args.Positionals().size() != 3) {
        status = Usage(std::string(command) + ": expected A OP B");
        return false;
    }
    op = FindOperation(args.Positionals()[1]);
    if (op == nullptr) {
        status = Usage(std::string(command) + ": unknown operation '" + args.Positionals()[1] + "'");
        return false;
    }
    std::string error;
    auto left = Operand(args, args.Positionals()[0], "type-a", error);
    if (!left) {
        status = Usage(std::string(command) + ": A: " + error);
        return false;
    }
    auto right = Operand(args, args.Positionals()[2], "type-b", error);
    if (!right) {
        status = Usage(std::string(command) + ": B: " + error);
        return false;
    }
    a = *left;
    b = *right;
    return true;
}

void Shift(CVarion& result, const CVarion& a, const CVarion& b, int which) {
    switch (which) {
    case 0: CVarion::L_SHIFT(result, a, b); break;
    case 1: CVarion::R_SHIFT(result, a, b); break;
    case 2: CVarion::BIT_OR(result, a, b); break;
    case 3: CVarion::BIT_AND(result, a, b); break;
    default: CVarion::BIT_XOR(result, a, b); break;
    }
}

int Relation(const CVarion& a, const CVarion& b, const Operation& op) {
    switch (op.family) {
    case Family::Relational: {
        const int results[] = {a == b, a != b, a < b, a <= b, a > b, a >= b};
        return results[op.code];
    }
    case Family::Named: {
        const int results[] = {CVarion::Equal(a, b),       CVarion::NotEqual(a, b),    CVarion::LittleThen(a, b),
                               CVarion::LittleEqual(a, b), CVarion::GreaterThen(a, b), CVarion::GreaterEqual(a, b)};
        return results[op.code];
    }
    default:
        return op.code == 0 ? CVarion::OR(a, b) : CVarion::AND(a, b);
    }
}

const char* kOperandHelp =
    "  A and B are read by their look: an integer as VT_I4 (VT_I8, VT_UI8 when\n"
    "  larger), a decimal number as VT_R8, anything else as text (VT_BSTR).\n"
    "  --type-a TYPE / --type-b TYPE read them as that type instead (numbers of\n"
    "  the type, day counts for dates and durations, text for BSTR).\n";

}  // namespace

int Calc(const Args& args) {
    if (args.Flag("help")) {
        std::printf("usage: varion calc A OP B [--type-a TYPE] [--type-b TYPE]\n"
                    "  Computes A OP B and prints the result's type, value and result code;\n"
                    "  exit status 1 when the library reports a failure code.\n"
                    "  OP: + - * / %% (or add sub mul div mod), << >> | & ^ (or shl shr or\n"
                    "  and xor: 32-bit, B read as VT_I4).\n%s"
                    "example: varion calc 100 + 100 --type-a I1 --type-b I1\n",
                    kOperandHelp);
        return kOk;
    }
    if (auto unknown = args.Unknown({"type-a", "type-b", "help"})) return Usage("calc: unknown option " + *unknown);
    CVarion a;
    CVarion b;
    const Operation* op = nullptr;
    int status = kOk;
    if (!ReadOperands(args, "calc", a, b, op, status)) return status;
    if (op->family != Family::Arithmetic && op->family != Family::Shift)
        return Usage("calc: '" + args.Positionals()[1] + "' is a comparison (see 'varion compare')");
    CVarion result;
    long code = RC_OK;
    if (op->family == Family::Arithmetic)
        code = CVarion::Arithmetic(result, a, b, op->code);
    else
        Shift(result, a, b, op->code);
    PrintResult(result, code);
    return code < 0 ? kFailure : kOk;
}

int Compare(const Args& args) {
    if (args.Flag("help")) {
        std::printf("usage: varion compare A OP B [--type-a TYPE] [--type-b TYPE]\n"
                    "  Compares A and B and prints 1 or 0.\n"
                    "  OP: == != < <= > >= (or eq ne lt le gt ge): the relational operators,\n"
                    "  with a millionth tolerance between number types; Equal NotEqual\n"
                    "  LittleThen LittleEqual GreaterThen GreaterEqual: both read as doubles,\n"
                    "  exactly; OR AND: both read as VT_I4.\n%s"
                    "example: varion compare 5 == 5.0000049\n",
                    kOperandHelp);
        return kOk;
    }
    if (auto unknown = args.Unknown({"type-a", "type-b", "help"})) return Usage("compare: unknown option " + *unknown);
    CVarion a;
    CVarion b;
    const Operation* op = nullptr;
    int status = kOk;
    if (!ReadOperands(args, "compare", a, b, op, status)) return status;
    if (op->family == Family::Arithmetic || op->family == Family::Shift)
        return Usage("compare: '" + args.Positionals()[1] + "' is not a comparison (see 'varion calc')");
    std::printf("%d\n", Relation(a, b, *op));
    return kOk;
}

}  // namespace cli
