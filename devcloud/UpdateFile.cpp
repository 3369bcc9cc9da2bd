#include "devcloud/UpdateFile.h"

#include "devcloud/api/RequestBody.h"

#include <fstream>
#include <sstream>

namespace tavrin::devcloud {
namespace {

constexpr std::size_t maxTextBytes = std::size_t{16} * 1024;
constexpr std::int64_t maxBuild = 1'000'000'000;

} // namespace

tl::expected<UpdateOffer, std::string> parseUpdateOffer(std::string_view text)
{
    const Outcome object = parseBody(text);
    if (!object)
        return tl::unexpected(std::string("the update file holds no JSON object"));
    FieldReader fields(*object);
    UpdateOffer offer;
    offer.build = fields.count("build", maxBuild);
    offer.version = fields.text("version", maxTextBytes);
    offer.downloadUrl = fields.text("downloadUrl", maxTextBytes);
    offer.notes = fields.textOr("notes", "", maxTextBytes);
    if (fields.problem() || !offer.downloadUrl.starts_with("https://"))
        return tl::unexpected(
            std::string("the update file needs build, version and an https downloadUrl"));
    return offer;
}

tl::expected<UpdateOffer, std::string> readUpdateFile(const std::filesystem::path& file)
{
    std::ifstream stream(file);
    if (!stream)
        return tl::unexpected("cannot read " + file.string());
    std::ostringstream text;
    text << stream.rdbuf();
    return parseUpdateOffer(text.str());
}

} // namespace tavrin::devcloud
