#include "devcloud/endpoints/Outbox.h"

#include "devcloud/security/Secrets.h"

#include <cstdio>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tavrin::devcloud {
namespace {

bool writePrivately(const std::filesystem::path& file, std::string_view text)
{
    const int descriptor =
        open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        return false;
    const ssize_t written = write(descriptor, text.data(), text.size());
    const bool isWhole = close(descriptor) == 0 && written == static_cast<ssize_t>(text.size());
    // On a full disk, half a code would look like one.
    if (!isWhole)
        unlink(file.c_str());
    return isWhole;
}

} // namespace

Outbox::Outbox(std::filesystem::path folder)
    : m_folder(std::move(folder))
{
}

bool Outbox::operator()(const Mail& mail) const
{
    std::error_code error;
    if (std::filesystem::create_directories(m_folder, error))
        std::filesystem::permissions(m_folder, std::filesystem::perms::owner_all, error);
    if (error)
        return false;
    const std::string text =
        "To: " + mail.to + "\nSubject: " + mail.subject + "\n\n" + mail.body + "\n";
    // The time sorts the folder, the random tail keeps two mails of one second apart.
    const std::string name =
        std::to_string(std::time(nullptr)) + "-" + newToken().substr(0, 8) + ".txt";
    if (!writePrivately(m_folder / name, text))
        return false;
    std::printf("--- mail ---\n%s------------\n", text.c_str());
    std::fflush(stdout);
    return true;
}

} // namespace tavrin::devcloud
