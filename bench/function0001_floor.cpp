// The floor for search and replace: TagLib alone replacing "ft." with "feat." in the artist and
// title of every file of a folder, saving only the files it changed.
// Usage: bench_function0001_floor FOLDER
#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace {

bool replaceAll(TagLib::String &text)
{
    std::string value = text.to8Bit(true);
    bool replaced = false;
    for (std::size_t at = value.find("ft."); at != std::string::npos; at = value.find("ft.", at + 5)) {
        value.replace(at, 3, "feat.");
        replaced = true;
    }
    if (replaced)
        text = TagLib::String(value, TagLib::String::UTF8);
    return replaced;
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: bench_function0001_floor FOLDER\n");
        return 2;
    }
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(argv[1]))
        if (entry.path().extension() == ".mp3")
            files.push_back(entry.path());

    const auto start = std::chrono::steady_clock::now();
    std::size_t changed = 0;
    for (const auto &path : files) {
        TagLib::FileRef ref(path.c_str(), false);
        if (ref.isNull())
            continue;
        TagLib::String artist = ref.tag()->artist();
        TagLib::String title = ref.tag()->title();
        const bool artistChanged = replaceAll(artist);
        const bool titleChanged = replaceAll(title);
        if (!artistChanged && !titleChanged)
            continue;
        ref.tag()->setArtist(artist);
        ref.tag()->setTitle(title);
        ref.save();
        ++changed;
    }
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    std::printf("floor: TagLib replace and save   %6zu files (%zu changed) %8.2f s %9.0f files/s\n",
                files.size(), changed, seconds, files.size() / seconds);
    return 0;
}
