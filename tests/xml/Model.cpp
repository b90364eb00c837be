#include "tests/xml/Model.h"

#include <cctype>
#include <list>
#include <utility>
#include <vector>

namespace test {

namespace {

using std::string;
constexpr auto npos = string::npos;

struct Failure {};

void require(bool condition)
{
    if (!condition)
        throw Failure();
}

string lowered(string text)
{
    for (char& c : text)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text;
}

struct Attribute {
    string key;
    string name;
    string value;
};

// 17 lists, each with its newest entry first.
struct Attributes {
    std::vector<std::list<Attribute>> buckets = std::vector<std::list<Attribute>>(17);

    void set(const string& name, const string& value)
    {
        const string key = lowered(name);
        unsigned hash = 0;
        for (const char c : key)
            hash = hash * 33 + static_cast<unsigned>(static_cast<signed char>(c));
        for (Attribute& attribute : buckets[hash % 17]) {
            if (attribute.key == key) {
                attribute = { key, name, value };
                return;
            }
        }
        buckets[hash % 17].push_front({ key, name, value });
    }
    string described() const
    {
        string line;
        for (const auto& bucket : buckets) {
            for (const Attribute& attribute : bucket)
                line.append(line.empty() ? "{" : ",").append(attribute.name).append("=").append(attribute.value);
        }
        return line.empty() ? line : line + "}";
    }
};

class Model {
public:
    explicit Model(string text) : text_(std::move(text)) {}

    string document(bool strict)
    {
        if (match("<?xml version=\""))
            skip_past("?>");
        else
            require(!strict);
        while (match("<!--"))
            skip_past("-->");
        if (match("<!DOCTYPE"))
            skip_past(">");
        while (match("<!--"))
            skip_past("-->");
        return element();
    }

private:
    bool at_end() const { return at_ >= text_.size(); }

    size_t behind_space() const
    {
        const size_t place = text_.find_first_not_of(" \t\r\n", at_);
        return place == npos ? text_.size() : place;
    }

    bool match(const string& token)
    {
        const size_t place = behind_space();
        if (place == text_.size())
            return false;
        const string here = text_.substr(place, token.size());
        if (here != token.substr(0, here.size()))
            return false;
        at_ = place + here.size();
        return true;
    }

    string identifier()
    {
        at_ = behind_space();
        string name;
        while (!at_end() && (std::isalnum(static_cast<unsigned char>(text_[at_])) || strchr_in(":_-", text_[at_])))
            name += text_[at_++];
        require(!name.empty());
        return name;
    }
    static bool strchr_in(const string& set, char c) { return set.find(c) != npos; }

    void skip_past(const string& mark)
    {
        const size_t place = text_.find(mark, at_);
        require(place != npos);
        at_ = place + mark.size();
    }

    // Decodes from at_ up to `end`; at_ stays where decoding stopped.
    string decoded(size_t end)
    {
        string out;
        while (at_ < end) {
            const char c = text_[at_];
            if (strchr_in(" \t\n\v\f\r", c)) {
                if (!out.empty())
                    out += ' ';
                while (at_ < end && strchr_in(" \t\n\v\f\r", text_[at_]))
                    at_++;
            } else if (c == '&') {
                at_++;
                if (at_ < end && !reference(end, out))
                    return out;
            } else {
                out += c;
                at_++;
            }
        }
        return out;
    }

    bool reference(size_t end, string& out)
    {
        const std::pair<string, char> names[] = { { "amp;", '&' },  { "lt;", '<' },    { "gt;", '>' },
                                                  { "quot;", '"' }, { "apos;", '\'' }, { "nbsp;", ' ' } };
        const string run = text_.substr(at_, end - at_);
        for (const auto& [name, c] : names) {
            if (lowered(run.substr(0, name.size())) == name) {
                out += c;
                at_ += name.size();
                return true;
            }
        }
        if (run[0] != '#') {
            out += '&';
            return true;
        }
        at_++;
        const size_t digits = run.find_first_not_of("0123456789", 1);
        const string number = run.substr(1, digits == npos ? npos : digits - 1);
        if (number.empty())
            return false;
        int low = 0;
        for (const char digit : number)
            low = (low * 10 + digit - '0') % 256;
        out += static_cast<char>(low);
        const size_t semicolon = run.find(';');
        at_ = semicolon == npos ? end : at_ - 1 + semicolon + 1;
        return true;
    }

    std::pair<string, string> attribute()
    {
        const string name = identifier();
        require(match("="));
        const string quote = match("\"") ? "\"" : "'";
        require(quote == "\"" || match("'"));
        const size_t end = text_.find(quote, at_);
        require(end != npos);
        const string value = decoded(end);
        require(match(quote));
        return { name, value };
    }

    string element()
    {
        require(match("<"));
        const string name = identifier();
        Attributes attributes;
        while (!match(">")) {
            if (match("/")) {
                require(match(">"));
                return name + attributes.described();
            }
            require(!at_end());
            const auto [attribute_name, value] = attribute();
            attributes.set(attribute_name, value);
        }
        string text;
        string children;
        for (;;) {
            require(!at_end());
            size_t bracket = text_.find('<', at_);
            require(bracket != npos);
            if (match("<![CDATA[")) {
                const size_t end = text_.find("]]>", at_);
                require(end != npos);
                separate(text);
                text += decoded(end);
                at_ = bracket = end + 3;
            }
            if (bracket > at_) {
                separate(text);
                text += decoded(bracket);
                require(at_ == bracket);
            }
            if (match("</" + name + ">"))
                break;
            if (match("<!--"))
                skip_past("-->");
            else
                children.append(children.empty() ? "[" : ",").append(element());
        }
        string line = name + attributes.described();
        if (!text.empty())
            line.append("(").append(text).append(")");
        return children.empty() ? line : line.append(children).append("]");
    }

    static void separate(string& text)
    {
        if (!text.empty() && text.back() != ' ')
            text += ' ';
    }

    const string text_;
    size_t at_ = 0;
};

} // namespace

std::string model_of(const std::string& text, bool strict)
{
    try {
        return Model(text.substr(0, text.find('\0'))).document(strict);
    } catch (const Failure&) {
        return "null";
    }
}

} // namespace test
