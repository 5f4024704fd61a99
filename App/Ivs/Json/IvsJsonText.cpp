#include "Ivs/Json/IvsJsonText.h"

#include <fmt/format.h>

#include <set>
#include <vector>

#include "Ivs/Json/IvsWirePlace.h"

namespace Marvane::FrameSift {

namespace {

using nlohmann::ordered_json;

constexpr size_t sc_maxFields = 256; // a new field is compared with all in front of it
constexpr size_t sc_maxDepth = 32;
constexpr size_t sc_maxMessage = 160; // it repeats what it could not read, of any length

// Walks the text in front of the parser, and knows the place that it has reached. Not a callback of the parser: with one,
// that looks through a whole list at the end of each of its entries.
class CNesting : public nlohmann::json_sax<ordered_json>
{
public:
    bool null() override { return TakeEntry(); }
    bool boolean(bool) override { return TakeEntry(); }
    bool number_integer(number_integer_t) override { return TakeEntry(); }
    bool number_unsigned(number_unsigned_t) override { return TakeEntry(); }
    bool number_float(number_float_t, const string_t&) override { return TakeEntry(); }
    bool string(string_t&) override { return TakeEntry(); }
    bool binary(binary_t&) override { return TakeEntry(); }
    bool start_object(size_t) override { return Open(false); }
    bool start_array(size_t) override { return Open(true); }
    bool end_object() override { return Close(); }
    bool end_array() override { return Close(); }
    bool key(string_t& name) override { return TakeKey(name); }
    // The parser says it.
    bool parse_error(size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

private:
    struct LEVEL
    {
        bool bList = false;
        size_t nIndex = 0; // of the entry that is read
        std::string key;   // of the field that is read
        std::set<std::string> keys;
    };

    bool TakeEntry()
    {
        if (!m_levels.empty())
            ++m_levels.back().nIndex;
        return true;
    }

    bool Close()
    {
        m_levels.pop_back();
        return TakeEntry();
    }

    bool Open(bool bList)
    {
        if (m_levels.size() == sc_maxDepth)
            Fail("is nested too deep");
        m_levels.emplace_back().bList = bList;
        return true;
    }

    bool TakeKey(const std::string& key)
    {
        LEVEL& object = m_levels.back();
        object.key = key;
        if (!object.keys.insert(key).second)
            Fail("stands twice");
        if (object.keys.size() > sc_maxFields)
            Fail(fmt::format("there are too many fields: at most {}", sc_maxFields));
        return true;
    }

    [[noreturn]] void Fail(const std::string& text) const
    {
        std::string name;
        for (const LEVEL& level : m_levels) {
            if (level.bList)
                name.append(fmt::format("[{}]", level.nIndex));
            else
                name.append(name.empty() ? "" : ".").append(ShortName(level.key));
        }
        throw CIvsJsonError(fmt::format("{}: {}", name, text));
    }

    std::vector<LEVEL> m_levels;
};

} // namespace

ordered_json ParseIvsJsonText(const std::string& text)
{
    CNesting nesting;
    try {
        ordered_json::sax_parse(text, &nesting); // what is no JSON is told of below
        return ordered_json::parse(text);
    } catch (const ordered_json::exception& error) {
        // "[json.exception.parse_error.101] parse error at line 1, column 2: ..."
        const std::string_view what = error.what();
        const size_t nAt = what.find("] ");
        throw CIvsJsonError(ShortName(what.substr(nAt == std::string_view::npos ? 0 : nAt + 2), sc_maxMessage));
    }
}

} // namespace Marvane::FrameSift
