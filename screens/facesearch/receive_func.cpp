#include "screens/facesearch/receive_func.h"

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>

#include "screens/facesearch/face_answer.h"
#include "screens/facesearch/fsv_output.h"
#include "screens/facesearch/fsv_tools.h"

namespace {

/// What a server's pictures leave free on the disk, in bytes.
constexpr unsigned long long kMustStayFree = 64ULL * 1024 * 1024;

/// A name that stays in its folder and shows there.
bool isFileName(const std::string& name) {
    return !name.empty() && name.front() != '.' && name.find('/') == std::string::npos &&
           name.find('?') == std::string::npos;
}

bool hasRoom(std::size_t bytes) {
    struct statvfs disk {};
    return ::statvfs(".", &disk) == 0 &&
           static_cast<unsigned long long>(disk.f_bavail) * disk.f_frsize >= kMustStayFree + bytes;
}

bool writeAll(int descriptor, const std::vector<unsigned char>& bytes) {
    for (std::size_t at = 0; at < bytes.size();) {
        const ssize_t written = ::write(descriptor, bytes.data() + at, bytes.size() - at);
        if (written < 0 && errno != EINTR)
            return false;
        at += written > 0 ? static_cast<std::size_t>(written) : 0;
    }
    return true;
}

/// A picture of that name is replaced when the new one is complete; a link is, too, and is not
/// followed.
bool save(const std::string& path, const std::vector<unsigned char>& bytes) {
    const std::string begun = "./.face-search.part";
    ::unlink(begun.c_str());
    const int descriptor =
        ::open(begun.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (descriptor < 0)
        return false;
    const bool written = writeAll(descriptor, bytes) && ::fsync(descriptor) == 0;
    ::close(descriptor);
    if (written && ::rename(begun.c_str(), path.c_str()) == 0)
        return true;
    ::unlink(begun.c_str());
    return false;
}

template <std::size_t size>
void printText(const char* label, const char (&field)[size]) {
    char text[kUtf8TextSize];
    EucKR2Utf8(field, size, text);
    fsvPrint("%s\t: %s\n", label, text);
}

void tellFace(const FaceInfoRecord& face) {
    fsvPrint("Request ID\t: %d\n", static_cast<int>(face.requestId));
    fsvPrint("Confidence\t: %d\n", face.confidence);
    fsvPrint("Person ID\t: %s\n", printableAscii(face.personId, sizeof face.personId).c_str());
    printText("Name(utf8)", face.name);
    printText("Position(utf8)", face.position);
    printText("Dept1(utf8)", face.department1);
    printText("Dept2(utf8)", face.department2);
    printText("Dept3(utf8)", face.department3);
    // Readers of this output know the fourth one by the same label.
    printText("Dept3(utf8)", face.department4);
}

void saveImage(const FaceImageAnswer& answer) {
    const std::string id = printableAscii(answer.head.personId, sizeof answer.head.personId);
    fsvPrint("Request ID : %d\n", static_cast<int>(answer.head.requestId));
    fsvPrint("Person ID : %s\n", id.c_str());
    const std::string path = "./" + id + ".jpg";
    if (isFileName(id) && hasRoom(answer.image.size()) && save(path, answer.image))
        fsvPrint("Saved image file: %s\n", path.c_str());
    else
        fsvPrint("File Write Open Error\n");
}

}  // namespace

void ReceiveFunc(int kind, void* record) {
    if (record == nullptr)
        return;
    if (kind == face_message::FaceInfo)
        tellFace(*static_cast<const FaceInfoRecord*>(record));
    else if (kind == face_message::FaceImage)
        saveImage(*static_cast<const FaceImageAnswer*>(record));
}
