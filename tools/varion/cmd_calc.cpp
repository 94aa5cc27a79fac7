// varion calc A OP B | varion calc OP A   and   varion compare A OP B
#include "cli.h"

#include <cstdio>

namespace cli {
namespace {

enum class Family { Arithmetic, Bitwise, Unary, Relational, Named, Logical };

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
    {{"<<", "shl", "L_SHIFT"},      Family::Bitwise, 0},
    {{">>", "shr", "R_SHIFT"},      Family::Bitwise, 1},
    {{"|",  "or",  "BIT_OR"},       Family::Bitwise, 2},
    {{"&",  "and", "BIT_AND"},      Family::Bitwise, 3},
    {{"^",  "xor", "BIT_XOR"},      Family::Bitwise, 4},
    {{"~",  "not", "BIT_NOT"},      Family::Unary, 0},
    {{"",   "neg", "NEG"},          Family::Unary, 1},
    {{"++", "inc", "INC"},          Family::Unary, 2},
    {{"",   "dec", "DEC"},          Family::Unary, 3},
    {{"==", "eq",  "operator=="},   Family::Relational, 0},
    {{"!=", "ne",  "operator!="},   Family::Relational, 1},
    {{"<",  "lt",  "operator<"},    Family::Relational, 2},
    {{"<=", "le",  "operator<="},   Family::Relational, 3},
    {{">",  "gt",  "operator>"},    Family::Relational, 4},
    {{">=", "ge",  "operator>="},   Family::Relational, 5},
    {{"",   "",    "Equal"},        Family::Named, 0},
    {{"",   "",    "NotEqual"},     Family::Named, 1},
    {{"",   "",    "LittleThen"},   Family::Named, 2},
    {{"",   "",    "LittleEqual"},  Family::Named, 3},
    {{"",   "",    "GreaterThen"},  Family::Named, 4},
    {{"",   "",    "GreaterEqual"}, Family::Named, 5},
    {{"",   "",    "OR"},           Family::Logical, 0},
    {{"",   "",    "AND"},          Family::Logical, 1},
};
// clang-format on

constexpr Option kOptions[] = {{"type-a", true}, {"type-b", true}};

const Operation* FindOperation(const std::string& name) {
    for (const Operation& op : kOperations)
        for (const char* n : op.names)
            if (*n != 0 && name == n) return &op;
    return nullptr;
}

// An operand from its text: as --type-a / --type-b says, else by its look.
std::optional<CVarion> Operand(const Args& args, std::string_view command, const std::string& text,
                               const char* option, int& status) {
    if (!args.Value(option)) {
        auto value = GuessValue(text);
        if (!value) status = kFailure;  // only when the text cannot be allocated
        return value;
    }
    const auto type = TypeArgument(args, command, option, std::nullopt, status);
    if (!type) return std::nullopt;
    return ValueArgument(command, text, *type, status);
}

void Bitwise(CVarion& result, const CVarion& a, const CVarion& b, int which) {
    switch (which) {
    case 0: CVarion::L_SHIFT(result, a, b); break;
    case 1: CVarion::R_SHIFT(result, a, b); break;
    case 2: CVarion::BIT_OR(result, a, b); break;
    case 3: CVarion::BIT_AND(result, a, b); break;
    default: CVarion::BIT_XOR(result, a, b); break;
    }
}

void Unary(CVarion& result, const CVarion& a, int which) {
    switch (which) {
    case 0: CVarion::BIT_NOT(result, a); break;
    case 1: CVarion::NEG(result, a); break;
    case 2: CVarion::INC(result, a); break;
    default: CVarion::DEC(result, a); break;
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

int Calc(const Args& args) {
    constexpr const char* kName = "calc";
    int status = kOk;
    if (!CheckPositionals(args, kName, 2, 3, "A OP B (or OP A)", status)) return status;
    const auto& p = args.Positionals();
    const bool unary = p.size() == 2;
    const std::string& opName = unary ? p[0] : p[1];
    const Operation* op = FindOperation(opName);
    if (op == nullptr) return Usage(kName, "unknown operation '" + Quoted(opName) + "'");
    if (op->family >= Family::Relational)
        return Usage(kName, "'" + opName + "' is a comparison (see 'varion compare')");
    if (unary != (op->family == Family::Unary))
        return Usage(kName, "'" + opName + "' takes " + (unary ? "two operands: A OP B" : "one operand: OP A"));
    if (unary && args.Value("type-b")) return Usage(kName, "--type-b needs a second operand");

    const auto a = Operand(args, kName, unary ? p[1] : p[0], "type-a", status);
    if (!a) return status;
    CVarion result;
    long code = RC_OK;
    if (unary) {
        Unary(result, *a, op->code);
    } else {
        const auto b = Operand(args, kName, p[2], "type-b", status);
        if (!b) return status;
        if (op->family == Family::Arithmetic)
            code = CVarion::Arithmetic(result, *a, *b, op->code);
        else
            Bitwise(result, *a, *b, op->code);
    }
    const Report report(result, code);
    report.Print(args.Json());
    return report.Status();
}

int Compare(const Args& args) {
    constexpr const char* kName = "compare";
    int status = kOk;
    if (!CheckPositionals(args, kName, 3, 3, "A OP B", status)) return status;
    const auto& p = args.Positionals();
    const Operation* op = FindOperation(p[1]);
    if (op == nullptr) return Usage(kName, "unknown operation '" + Quoted(p[1]) + "'");
    if (op->family < Family::Relational)
        return Usage(kName, "'" + p[1] + "' is not a comparison (see 'varion calc')");
    const auto a = Operand(args, kName, p[0], "type-a", status);
    if (!a) return status;
    const auto b = Operand(args, kName, p[2], "type-b", status);
    if (!b) return status;

    const int answer = Relation(*a, *b, *op);
    if (args.Json())
        Report(CVarion(answer), RC_OK)
            .Add("a_type", TypeName(a->GetType()))
            .Add("b_type", TypeName(b->GetType()))
            .Print(true);
    else
        std::printf("%d\n", answer);
    return kOk;
}

}  // namespace

#define VARION_OPERAND_HELP                                                        \
    "  A and B are read by their look: an integer as VT_I4 (VT_I8, VT_UI8 when\n"  \
    "  larger), a decimal number with '.' as VT_R8, anything else as text\n"       \
    "  (VT_BSTR). --type-a TYPE / --type-b TYPE read them as a value of that\n"    \
    "  type instead (see 'varion convert --help' for --from).\n"

const Command kCalcCommand = {
    "calc",
    "compute A OP B, or OP A, across mixed types",
    "usage: varion calc A OP B [--type-a TYPE] [--type-b TYPE]\n"
    "       varion calc OP A [--type-a TYPE]\n"
    "  Computes with the library's operations and prints the result's type,\n"
    "  value and result code; exit status 1 when the code is a failure.\n"
    "  OP: + - * / % (or add sub mul div mod, ADD ...): Arithmetic, in the\n"
    "  destination type of the pair, widening integers that do not fit;\n"
    "  << >> | & ^ (or shl shr or and xor): 32-bit, A and B read as VT_I4;\n"
    "  one operand: ~ neg ++ (or not inc dec): at A's own width, wrapping.\n"
    VARION_OPERAND_HELP
    "example: varion calc 100 + 100 --type-a I1 --type-b I1\n"
    "example: varion calc 1.5 + 2 --type-a BSTR --type-b BSTR\n"
    "example: varion calc neg 1 --type-a UI1\n",
    kOptions,
    Calc,
};

const Command kCompareCommand = {
    "compare",
    "compare A OP B across mixed types",
    "usage: varion compare A OP B [--type-a TYPE] [--type-b TYPE]\n"
    "  Compares A and B and prints 1 or 0 (in --json as a VT_I4 value).\n"
    "  OP: == != < <= > >= (or eq ne lt le gt ge): the relational operators,\n"
    "  with a millionth tolerance between numbers of different types; Equal\n"
    "  NotEqual LittleThen LittleEqual GreaterThen GreaterEqual: both read as\n"
    "  doubles, exactly; OR AND: both read as VT_I4.\n"
    VARION_OPERAND_HELP
    "example: varion compare 5 == 5.0000049\n"
    "example: varion compare 10 lt 9 --type-a BSTR --type-b BSTR\n",
    kOptions,
    Compare,
};

}  // namespace cli
