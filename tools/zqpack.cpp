// zqpack: packs images into the library's packed texture files.
//
//   zqpack te [options] -o OUT.te INPUT...    an atlas (".TE")
//   zqpack om [options] -o OUT.om INPUT...    a packed file (".OM")
//
// INPUT is an image file, a folder (its images in name order) or a manifest (.txt) whose lines read
//   FILE [NAME [ORIGIN_X ORIGIN_Y]]
// with FILE relative to the manifest; '#' starts a comment, "double quotes" hold spaces. A name
// defaults to the file's name without its extension.
#include "ZQImage.h"
#include "ZQPackedTexture.h"
#include "ToolText.h"

#include <stb_rect_pack.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <clocale>
#include <cstring>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <iomanip>
#include <map>
#include <string>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;
using ZQ::formats::PackedFile;
using ZQ::formats::PackedRecord;

namespace {

const char kUsage[] =
    "usage: zqpack te|om [options] -o OUTPUT INPUT...\n"
    "  INPUT          an image, a folder of images, or a manifest (.txt: FILE [NAME [ORIGIN_X ORIGIN_Y]],\n"
    "                 \"quotes\" around a file or name with spaces)\n"
    "  -o FILE        the file to write\n"
    "  --wide         te: UTF-16 names (712-byte records) instead of single-byte names\n"
    "  --v1           om: the first layout (UTF-16 names, 104-byte records) instead of \"v2\"\n"
    "  --center       origins at the middle of each image (unless a manifest gives one)\n"
    "  --padding N    pixels between images (default 1; none at the atlas's edges)\n"
    "  --size WxH     atlas size, powers of two up to 16384 (default: the smallest that fits)\n"
    "  --max-size N   largest side tried for the atlas (default 8192, at most 16384)\n"
    "  --quiet        no progress and no warnings\n"
    "  --help         this text\n";

// The largest texture side the library sizes a texture for.
const int kLargestSide = 16384;

struct Sprite {
    Sprite(std::string file = {}, std::string name = {}) : file(std::move(file)), name(std::move(name)) {}
    std::string file;
    std::string name;
    bool hasOrigin = false;
    int originX = 0, originY = 0;
    zqtools::Image image;
    int x = 0, y = 0;
};

struct Options {
    bool atlas = true;
    bool wide = false;
    bool versionOne = false;
    bool center = false;
    bool quiet = false;
    int padding = 1;
    int width = 0, height = 0;
    int maxSide = 8192;
    std::string output;
    std::vector<std::string> inputs;
};

[[noreturn]] void Fail(const std::string& message) {
    std::fprintf(stderr, "zqpack: %s\n", message.c_str());
    std::exit(1);
}

void Warn(const Options& options, const std::string& message) {
    if (!options.quiet)
        std::fprintf(stderr, "zqpack: warning: %s\n", message.c_str());
}

bool IsImageFile(const fs::path& path) {
    const std::string extension = zqtools::UpperAscii(path.extension().string());
    for (const char* known : {".PNG", ".JPG", ".JPEG", ".BMP", ".TGA", ".GIF", ".PSD"})
        if (extension == known)
            return true;
    return false;
}

// Origins are stored as 32-bit integers.
bool IsNumber(const std::string& text) {
    long long value = 0;
    return zqtools::ParseWhole(text, INT32_MIN, INT32_MAX, value);
}

void AddManifest(const fs::path& manifest, std::vector<Sprite>& sprites, const Options& options) {
    std::ifstream in(manifest);
    if (!in)
        Fail("cannot read " + manifest.string());
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        const std::string where = manifest.string() + ":" + std::to_string(number) + ": ";
        std::istringstream fields(line.substr(0, line.find('#')));
        std::vector<std::string> words;
        for (std::string word; fields >> std::quoted(word);)
            words.push_back(word);
        if (words.empty())
            continue;
        if (words.size() > 4)
            Fail(where + "a line reads FILE [NAME [ORIGIN_X ORIGIN_Y]]");
        Sprite sprite((manifest.parent_path() / words[0]).string());
        // "FILE X Y": an origin without a name, which would otherwise read as the name X.
        if (words.size() == 3 && IsNumber(words[1]) && IsNumber(words[2])) {
            Warn(options, where + "an origin without a name; the name is the file's, \"" +
                              fs::path(words[0]).stem().string() + "\"");
            words.insert(words.begin() + 1, fs::path(words[0]).stem().string());
        }
        sprite.name = words.size() > 1 ? words[1] : fs::path(sprite.file).stem().string();
        if (words.size() == 3)
            Fail(where + "an origin needs x and y");
        if (words.size() == 4) {
            if (!IsNumber(words[2]) || !IsNumber(words[3]))
                Fail(where + "the origin must be two whole numbers of 32 bits");
            sprite.originX = static_cast<int>(std::strtol(words[2].c_str(), nullptr, 10));
            sprite.originY = static_cast<int>(std::strtol(words[3].c_str(), nullptr, 10));
            sprite.hasOrigin = true;
        }
        sprites.push_back(sprite);
    }
}

std::vector<Sprite> CollectSprites(const Options& options) {
    std::vector<Sprite> sprites;
    for (const std::string& input : options.inputs) {
        const fs::path path(input);
        if (fs::is_directory(path)) {
            std::vector<fs::path> files;
            for (const fs::directory_entry& entry : fs::directory_iterator(path))
                if (entry.is_regular_file() && IsImageFile(entry.path()))
                    files.push_back(entry.path());
            std::sort(files.begin(), files.end());
            for (const fs::path& file : files)
                sprites.emplace_back(file.string(), file.stem().string());
        } else if (path.extension() == ".txt") {
            AddManifest(path, sprites, options);
        } else {
            sprites.emplace_back(input, path.stem().string());
        }
    }
    return sprites;
}

void Progress(const Options& options, const char* what, size_t done, size_t total) {
    if (options.quiet || total < 50)
        return;
    if (done == total || done % std::max<size_t>(1, total / 10) == 0)
        std::fprintf(stderr, "zqpack: %s %zu/%zu\n", what, done, total);
}

// Tries the given size, or else every power-of-two size up to the largest side, smallest area first (of
// equal areas the squarer, then the wider). Padding goes right of and below each image; the atlas is
// that much larger for the packer, so images may touch its right and bottom edges.
void Pack(std::vector<Sprite>& sprites, const Options& options, int& width, int& height) {
    std::vector<stbrp_rect> rects(sprites.size());
    long long area = 0;
    int widest = 0, tallest = 0;
    for (size_t i = 0; i < sprites.size(); ++i) {
        rects[i].id = static_cast<int>(i);
        rects[i].w = sprites[i].image.width + options.padding;
        rects[i].h = sprites[i].image.height + options.padding;
        area += static_cast<long long>(sprites[i].image.width) * sprites[i].image.height;
        widest = std::max(widest, sprites[i].image.width);
        tallest = std::max(tallest, sprites[i].image.height);
    }
    std::vector<std::pair<int, int>> sizes;
    if (options.width > 0) {
        sizes.push_back({options.width, options.height});
    } else {
        for (int w = 1; w <= options.maxSide; w *= 2)
            for (int h = 1; h <= options.maxSide; h *= 2)
                if (w >= widest && h >= tallest && static_cast<long long>(w) * h >= area)
                    sizes.push_back({w, h});
        auto order = [](const std::pair<int, int>& size) {
            const long long w = size.first, h = size.second;
            return std::make_tuple(w * h, std::max(w, h) / std::min(w, h), -w);
        };
        std::sort(sizes.begin(), sizes.end(),
                  [&](const std::pair<int, int>& a, const std::pair<int, int>& b) { return order(a) < order(b); });
    }
    for (const auto& size : sizes) {
        const int packWidth = size.first + options.padding, packHeight = size.second + options.padding;
        std::vector<stbrp_node> nodes(static_cast<size_t>(packWidth));
        stbrp_context context;
        stbrp_init_target(&context, packWidth, packHeight, nodes.data(), static_cast<int>(nodes.size()));
        for (stbrp_rect& rect : rects)
            rect.was_packed = 0;
        if (stbrp_pack_rects(&context, rects.data(), static_cast<int>(rects.size())) == 1) {
            for (const stbrp_rect& rect : rects) {
                sprites[static_cast<size_t>(rect.id)].x = rect.x;
                sprites[static_cast<size_t>(rect.id)].y = rect.y;
            }
            width = size.first;
            height = size.second;
            return;
        }
    }
    if (options.width > 0)
        Fail("the images do not fit into " + std::to_string(options.width) + " x " + std::to_string(options.height));
    Fail("the images do not fit into an atlas of at most " + std::to_string(options.maxSide) + " pixels a side");
}

// The opaque part of an image: the box around its pixels whose alpha is not 0; all zero when none.
void OpaqueBox(const zqtools::Image& image, int32_t box[4]) {
    int left = image.width, top = image.height, right = 0, bottom = 0;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (image.Pixel(x, y)[3] != 0) {
                left = std::min(left, x), top = std::min(top, y);
                right = std::max(right, x + 1), bottom = std::max(bottom, y + 1);
            }
    if (right == 0) {
        std::fill(box, box + 4, 0);
        return;
    }
    box[0] = left, box[1] = top, box[2] = right, box[3] = bottom;
}

// Names the library will not find, or will read otherwise than the artist meant.
void CheckNames(const std::vector<Sprite>& sprites, const Options& options, bool wideNames) {
    std::map<std::u16string, const Sprite*> seen;
    for (const Sprite& sprite : sprites) {
        const std::string quoted = "\"" + sprite.name + "\" (" + sprite.file + ")";
        // The library upper-cases registered names, so the first of two that differ only in case wins.
        const auto earlier = seen.emplace(zqtools::FoldedName(zqtools::RegisteredName(sprite.name)), &sprite);
        if (!earlier.second) {
            const Sprite& first = *earlier.first->second;
            Warn(options, "the name " + quoted + " " + zqtools::SameNameHow(first.name, sprite.name) + " (" +
                              first.file + "): it cannot be found, the first one is");
        }
        if (!wideNames && !zqtools::IsAscii(sprite.name))
            Warn(options, "the name " + quoted +
                              " is not ASCII: single-byte names are read in the machine's code page; use " +
                              (options.atlas ? "--wide" : "--v1") + " for UTF-16 names");
        const std::string percent = zqtools::PercentWarning(sprite.name);
        if (!percent.empty())
            Warn(options, "the name " + quoted + " " + percent);
    }
}

bool IsPowerOfTwoSide(int side) {
    return side > 0 && side <= kLargestSide && (side & (side - 1)) == 0;
}

Options ParseOptions(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0) {
            std::fputs(kUsage, stdout);
            std::exit(0);
        }
    if (argc < 2 || (std::strcmp(argv[1], "te") != 0 && std::strcmp(argv[1], "om") != 0)) {
        std::fputs(kUsage, stderr);
        std::exit(2);
    }
    Options options;
    options.atlas = std::strcmp(argv[1], "te") == 0;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&] { return zqtools::OptionValue("zqpack", argc, argv, i); };
        if (arg == "-o")
            options.output = value();
        else if (arg == "--wide")
            options.wide = true;
        else if (arg == "--v1")
            options.versionOne = true;
        else if (arg == "--center")
            options.center = true;
        else if (arg == "--quiet")
            options.quiet = true;
        else if (arg == "--padding")
            options.padding = static_cast<int>(zqtools::WholeOption("zqpack", arg, value(), 0, kLargestSide));
        else if (arg == "--max-size")
            options.maxSide = static_cast<int>(zqtools::WholeOption("zqpack", arg, value(), 1, kLargestSide));
        else if (arg == "--size") {
            const std::string size = value();
            const size_t x = size.find('x');
            long long width = 0, height = 0;
            // Texture coordinates are fractions of the atlas: a texture of another size would not match them.
            if (x == std::string::npos || !zqtools::ParseWhole(size.substr(0, x), 1, kLargestSide, width) ||
                !zqtools::ParseWhole(size.substr(x + 1), 1, kLargestSide, height) ||
                !IsPowerOfTwoSide(static_cast<int>(width)) || !IsPowerOfTwoSide(static_cast<int>(height)))
                Fail("--size takes WIDTHxHEIGHT, each a power of two from 1 to " + std::to_string(kLargestSide) +
                     ", not \"" + size + "\"");
            options.width = static_cast<int>(width);
            options.height = static_cast<int>(height);
        } else if (!arg.empty() && arg[0] == '-')
            Fail("unknown option " + arg);
        else
            options.inputs.push_back(arg);
    }
    if (options.output.empty() || options.inputs.empty()) {
        std::fputs(kUsage, stderr);
        std::exit(2);
    }
    // Padding wider than the atlas leaves no room for any image.
    const int largest = options.width > 0 ? std::max(options.width, options.height) : options.maxSide;
    if (options.padding > largest)
        Fail("--padding " + std::to_string(options.padding) + " is wider than the atlas can be (" +
             std::to_string(largest) + " pixels)");
    return options;
}

} // namespace

int main(int argc, char** argv) {
    std::setlocale(LC_CTYPE, "C.UTF-8");
    const Options options = ParseOptions(argc, argv);
    std::vector<Sprite> sprites = CollectSprites(options);
    if (sprites.empty())
        Fail("no images given");
    const bool wideNames = options.atlas ? options.wide : options.versionOne;
    const size_t nameLimit = options.atlas ? 255 : 31;
    if (options.atlas && sprites.size() > 65535)
        Fail("an atlas holds at most 65535 images");
    for (size_t i = 0; i < sprites.size(); ++i) {
        Sprite& sprite = sprites[i];
        std::string error;
        if (!zqtools::LoadImage(sprite.file, sprite.image, error))
            Fail(sprite.file + ": " + error);
        const size_t length = wideNames ? Utf16(sprite.name).size() : sprite.name.size();
        if (length == 0 || length > nameLimit)
            Fail(sprite.file + ": the name \"" + sprite.name + "\" must have 1 to " + std::to_string(nameLimit) +
                 " characters");
        if (!sprite.hasOrigin && options.center) {
            sprite.originX = sprite.image.width >> 1;
            sprite.originY = sprite.image.height >> 1;
        }
        Progress(options, "read", i + 1, sprites.size());
    }

    CheckNames(sprites, options, wideNames);

    int width = 0, height = 0;
    Pack(sprites, options, width, height);
    zqtools::Image atlas;
    atlas.width = width;
    atlas.height = height;
    atlas.rgba.assign(static_cast<size_t>(width) * height * 4, 0);
    PackedFile file;
    file.width = width;
    file.height = height;
    file.versionTwo = !options.versionOne;
    file.teTag = options.wide ? ZQ::formats::kTeTagWide : ZQ::formats::kTeTagNarrow;
    for (size_t i = 0; i < sprites.size(); ++i) {
        const Sprite& sprite = sprites[i];
        for (int y = 0; y < sprite.image.height; ++y)
            std::memcpy(atlas.Pixel(sprite.x, sprite.y + y), sprite.image.Pixel(0, y),
                        static_cast<size_t>(sprite.image.width) * 4);
        PackedRecord record;
        record.wideName = wideNames;
        if (wideNames)
            record.wideNameText = Utf16(sprite.name);
        else
            record.narrowName = sprite.name;
        record.pixel[0] = sprite.x;
        record.pixel[1] = sprite.y;
        record.pixel[2] = sprite.x + sprite.image.width;
        record.pixel[3] = sprite.y + sprite.image.height;
        for (int k = 0; k < 4; ++k)
            record.texcoord[k] = static_cast<float>(record.pixel[k]) / static_cast<float>(k % 2 ? height : width);
        record.origin[0] = sprite.originX;
        record.origin[1] = sprite.originY;
        if (options.atlas)
            OpaqueBox(sprite.image, record.trim);
        file.records.push_back(record);
        Progress(options, "placed", i + 1, sprites.size());
    }
    const std::vector<uint8_t> png = zqtools::EncodePng(atlas);
    const std::vector<uint8_t> bytes =
        options.atlas ? ZQ::formats::WriteTe(file, png) : ZQ::formats::WriteOm(file, png);
    if (!zqtools::WriteFile(options.output, bytes))
        Fail("cannot write " + options.output);
    if (!options.quiet)
        std::fprintf(stderr, "zqpack: %s: %zu images in %d x %d\n", options.output.c_str(), sprites.size(), width,
                     height);
    return 0;
}
