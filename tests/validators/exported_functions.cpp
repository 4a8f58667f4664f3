// Calls exported functions of any type with arguments made of texts.
#include "tests/validators/exported_functions.h"

#include <tuple>
#include <type_traits>

#include "daemon/exported_data.h"
#include "dictionary/catalogue/accessors.h"
#include "platform/kobd_exports.h"
#include "validators/access_rules.h"
#include "validators/address_arithmetic.h"
#include "validators/bundled_address.h"
#include "validators/domain.h"
#include "validators/filters.h"
#include "validators/new_parent_control.h"
#include "validators/port.h"
#include "validators/port_forward.h"
#include "validators/regex.h"
#include "validators/rule_name.h"
#include "validators/speed_dial.h"
#include "validators/static_route.h"
#include "validators/texts.h"
#include "validators/url_filter.h"

namespace kobd::test
{
namespace
{
// A text, a row, or room for what is captured: a heap block of exactly its size at an odd address, so that the
// sanitizers see every byte read beside it and every access that needs alignment. Numbers are read from the text.
template <typename Type>
class Argument
{
public:
    explicit Argument(const std::optional<std::string>& given)
        : block_(kOdd + (kSlots ? kCaptureSlots * kCaptureBytes : given.value_or("").size() + (kRow ? 0 : 1))),
          missing_(!given)
    {
        if (given) given->copy(block_.data() + kOdd, given->size());
    }

    Type Value()
    {
        if constexpr (std::is_arithmetic_v<Type>)
            return static_cast<Type>(atof(block_.data() + kOdd));
        else if constexpr (kOffset)
            return missing_ ? nullptr : &offset_;
        else
            return missing_ ? nullptr : reinterpret_cast<Type>(block_.data() + kOdd);
    }

    // Adds what was written to the argument: a row whole, captures without the empty ones behind the last.
    void Tell(Words* written) const
    {
        if constexpr (kOffset) written->push_back(std::to_string(offset_));
        if constexpr (kRow) written->emplace_back(block_.begin() + kOdd, block_.end());
        if constexpr (std::is_same_v<Type, char*>) written->emplace_back(block_.data() + kOdd);
        if constexpr (!kSlots) return;
        for (size_t at = kOdd; at < block_.size(); at += kCaptureBytes) written->emplace_back(block_.data() + at);
        while (!written->empty() && written->back().empty()) written->pop_back();
    }

private:
    static constexpr bool kRow = std::is_same_v<Type, void*>;
    static constexpr bool kOffset = std::is_same_v<Type, int*>;
    static constexpr bool kSlots = std::is_same_v<Type, char (*)[kCaptureBytes]>;
    static constexpr size_t kOdd = 1;  // blocks from the heap lie at even addresses
    std::vector<char> block_;
    int offset_ = -1;
    bool missing_;
};

template <typename Result, typename... Types>
ExportedFunction Function(Result (&function)(Types...))
{
    ExportedFunction exported;
    exported.call = [&function](const Arguments& given)
    {
        size_t place = 0;
        [[maybe_unused]] const auto next = [&] { return place < given.size() ? given[place++] : ""; };
        std::tuple<Argument<Types>...> arguments{Argument<Types>(next())...};
        Outcome outcome;
        const auto call = [&](auto&... each) { return function(each.Value()...); };
        if constexpr (std::is_void_v<Result>)
            std::apply(call, arguments);
        else
            outcome.result = std::to_string(std::apply(call, arguments));
        std::apply([&](const auto&... each) { (each.Tell(&outcome.written), ...); }, arguments);
        return outcome;
    };
    if constexpr (std::is_same_v<Result(Types...), int(const char*)>) exported.check = &function;
    return exported;
}

ExportedFunction Function(void (&)(int)) { return {}; }

template <typename... Types>
ExportedFunction Function(int (&)(Types..., ...))
{
    return {};
}

template <typename Data>
requires(!std::is_function_v<Data>) ExportedFunction Function(Data&) { return {}; }
}  // namespace

const std::map<std::string_view, ExportedFunction>& ExportedFunctions()
{
    static const auto kFunctions = []
    {
        std::map<std::string_view, ExportedFunction> functions;
#define EXPORTED(name) functions[#name] = Function(name);
#include "tests/system/exported_names.def"
#undef EXPORTED
        std::erase_if(functions, [](const auto& one) { return one.second.call == nullptr; });
        return functions;
    }();
    return kFunctions;
}
}  // namespace kobd::test
