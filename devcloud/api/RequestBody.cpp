#include "devcloud/api/RequestBody.h"

#include "devcloud/api/Messages.h"

namespace tavrin::devcloud {
namespace {

/// Whether brackets outside strings open more than maxBodyDepth levels. Looked at before parsing,
/// because the values of a JSON library are built, copied and printed by recursion.
bool nestsTooDeep(std::string_view body)
{
    int depth = 0;
    bool insideString = false;
    for (std::size_t at = 0; at < body.size(); ++at) {
        const char c = body[at];
        if (insideString) {
            if (c == '\\')
                ++at;
            else if (c == '"')
                insideString = false;
        } else if (c == '"') {
            insideString = true;
        } else if (c == '{' || c == '[') {
            if (++depth > maxBodyDepth)
                return true;
        } else if (c == '}' || c == ']') {
            --depth;
        }
    }
    return false;
}

} // namespace

Outcome parseBody(std::string_view body)
{
    if (body.size() > maxBodyBytes)
        return refusal(413, messages::bodyTooLarge);
    if (body.empty())
        return refusal(400, messages::bodyMissing);
    if (nestsTooDeep(body))
        return refusal(400, messages::bodyTooDeep);
    Json value = Json::parse(body, nullptr, /*allow_exceptions=*/false);
    if (value.is_discarded())
        return refusal(400, messages::bodyNotJson);
    if (!value.is_object())
        return refusal(400, messages::bodyNotObject);
    return value;
}

FieldReader::FieldReader(const Json& object)
    : m_object(object)
{
}

const Json* FieldReader::member(const char* name) const
{
    const auto found = m_object.find(name);
    return found == m_object.end() ? nullptr : &*found;
}

void FieldReader::refuse(int status, const char* name, const char* reason)
{
    refuse({status, "字段 " + std::string(name) + " " + reason, {}});
}

void FieldReader::refuse(Problem problem)
{
    if (!m_problem)
        m_problem = std::move(problem);
}

std::string FieldReader::text(const char* name, std::size_t maxBytes)
{
    if (!member(name)) {
        refuse(400, name, "缺失。");
        return {};
    }
    return textOr(name, {}, maxBytes);
}

std::string FieldReader::textOr(const char* name, std::string_view fallback, std::size_t maxBytes)
{
    const Json* value = member(name);
    if (!value)
        return std::string(fallback);
    if (!value->is_string()) {
        refuse(400, name, "必须是字符串。");
        return {};
    }
    const auto& text = value->get_ref<const std::string&>();
    if (text.size() > maxBytes) {
        refuse(413, name, "过长。");
        return {};
    }
    return text;
}

std::int64_t FieldReader::count(const char* name, std::int64_t max)
{
    const Json* value = member(name);
    if (!value) {
        refuse(400, name, "缺失。");
        return 0;
    }
    if (!value->is_number_integer()) {
        refuse(400, name, "必须是整数。");
        return 0;
    }
    // Everything that parses as an integer but does not fit is kept unsigned by the library.
    const bool fits = value->is_number_unsigned()
        ? value->get<std::uint64_t>() <= static_cast<std::uint64_t>(max)
        : value->get<std::int64_t>() >= 0 && value->get<std::int64_t>() <= max;
    if (!fits) {
        refuse(422, name, "超出范围。");
        return 0;
    }
    return value->get<std::int64_t>();
}

Json FieldReader::objectOrEmpty(const char* name)
{
    const Json* value = member(name);
    if (!value)
        return Json::object();
    if (!value->is_object()) {
        refuse(400, name, "必须是对象。");
        return Json::object();
    }
    return *value;
}

} // namespace tavrin::devcloud
