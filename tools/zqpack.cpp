// zqpack: packs images into the library's packed texture files.
//
//   zqpack te [options] -o OUT.te INPUT...    an atlas (".TE")
//   zqpack om [options] -o OUT.om INPUT...    a packed file (".OM")
//
// INPUT is an image file, a folder (its images in name order) or a manifest (.txt) whose lines read
//   FILE [NAME [ORIGIN_X ORIGIN_Y]]
// with FILE relative to the manifest; '#' starts a comment. A name defaults to the file's name
// without its extension.
#include "ZQImage.h"
#include "ZQPackedTexture.h"

#include <stb_rect_pack.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;
using ZQ::formats::PackedFile;
using ZQ::formats::PackedRecord;

namespace {

const char kUsage[] =
    "usage: zqpack te|om [options] -o OUTPUT INPUT...\n"
    "  INPUT          an image, a folder of images, or a manifest (.txt: FILE [NAME [ORIGIN_X ORIGIN_Y]])\n"
    "  -o FILE        the file to write\n"
    "  --wide         te: UTF-16 names (712-byte records) instead of single-byte names\n"
    "  --v1           om: the first layout (UTF-16 names, 104-byte records) instead of \"v2\"\n"
    "  --center       origins at the middle of each image (unless a manifest gives one)\n"
    "  --padding N    pixels between images (default 1)\n"
    "  --size WxH     atlas size (default: the smallest power-of-two size that fits)\n"
    "  --max-size N   largest side tried for the atlas (default 8192)\n"
    "  --quiet        no progress\n";

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

bool IsImageFile(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), ::tolower);
    for (const char* known : {".png", ".jpg", ".jpeg", ".bmp", ".tga", ".gif", ".psd"})
        if (extension == known)
            return true;
    return false;
}

void AddManifest(const fs::path& manifest, std::vector<Sprite>& sprites) {
    std::ifstream in(manifest);
    if (!in)
        Fail("cannot read " + manifest.string());
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        line = line.substr(0, line.find('#'));
        std::istringstream fields(line);
        Sprite sprite;
        if (!(fields >> sprite.file))
            continue;
        sprite.file = (manifest.parent_path() / sprite.file).string();
        if (!(fields >> sprite.name))
            sprite.name = fs::path(sprite.file).stem().string();
        if (fields >> sprite.originX) {
            if (!(fields >> sprite.originY))
                Fail(manifest.string() + ":" + std::to_string(number) + ": an origin needs x and y");
            sprite.hasOrigin = true;
        }
        sprites.push_back(sprite);
    }
}

std::vector<Sprite> CollectSprites(const std::vector<std::string>& inputs) {
    std::vector<Sprite> sprites;
    for (const std::string& input : inputs) {
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
            AddManifest(path, sprites);
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

// Tries the given size, or power-of-two sizes from the smallest whose area suffices.
void Pack(std::vector<Sprite>& sprites, const Options& options, int& width, int& height) {
    std::vector<stbrp_rect> rects(sprites.size());
    long long area = 0;
    for (size_t i = 0; i < sprites.size(); ++i) {
        rects[i].id = static_cast<int>(i);
        rects[i].w = sprites[i].image.width + options.padding;
        rects[i].h = sprites[i].image.height + options.padding;
        area += static_cast<long long>(rects[i].w) * rects[i].h;
    }
    std::vector<std::pair<int, int>> sizes;
    if (options.width > 0) {
        sizes.push_back({options.width, options.height});
    } else {
        for (int w = 16, h = 16; w <= options.maxSide && h <= options.maxSide;) {
            if (static_cast<long long>(w) * h >= area)
                sizes.push_back({w, h});
            if (w <= h)
                w *= 2;
            else
                h *= 2;
        }
    }
    for (const auto& size : sizes) {
        // The padding goes right and below each image, so the last column and row may lose it.
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

std::u16string Utf16(const std::string& utf8) {
    std::u16string text;
    for (size_t i = 0; i < utf8.size();) {
        const unsigned char lead = static_cast<unsigned char>(utf8[i]);
        const int extra = lead < 0x80 ? 0 : lead < 0xE0 ? 1 : lead < 0xF0 ? 2 : 3;
        char32_t code = extra == 0 ? lead : lead & (0x3F >> extra);
        for (int k = 1; k <= extra && i + k < utf8.size(); ++k)
            code = code << 6 | (static_cast<unsigned char>(utf8[i + k]) & 0x3F);
        i += static_cast<size_t>(extra) + 1;
        if (code >= 0x10000) {
            code -= 0x10000;
            text.push_back(static_cast<char16_t>(0xD800 + (code >> 10)));
            text.push_back(static_cast<char16_t>(0xDC00 + (code & 0x3FF)));
        } else {
            text.push_back(static_cast<char16_t>(code));
        }
    }
    return text;
}

Options ParseOptions(int argc, char** argv) {
    if (argc < 2 || (std::strcmp(argv[1], "te") != 0 && std::strcmp(argv[1], "om") != 0)) {
        std::fputs(kUsage, stderr);
        std::exit(2);
    }
    Options options;
    options.atlas = std::strcmp(argv[1], "te") == 0;
    for (int i = 2; i < argc; ++i) {
        const std::string arg = argv[i];
        auto value = [&]() -> std::string {
            if (i + 1 >= argc)
                Fail(arg + " needs a value");
            return argv[++i];
        };
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
            options.padding = std::max(0, std::atoi(value().c_str()));
        else if (arg == "--max-size")
            options.maxSide = std::atoi(value().c_str());
        else if (arg == "--size") {
            const std::string size = value();
            if (std::sscanf(size.c_str(), "%dx%d", &options.width, &options.height) != 2 || options.width <= 0 ||
                options.height <= 0)
                Fail("--size takes WIDTHxHEIGHT");
        } else if (arg == "--help" || arg == "-h") {
            std::fputs(kUsage, stdout);
            std::exit(0);
        } else if (!arg.empty() && arg[0] == '-')
            Fail("unknown option " + arg);
        else
            options.inputs.push_back(arg);
    }
    if (options.output.empty() || options.inputs.empty()) {
        std::fputs(kUsage, stderr);
        std::exit(2);
    }
    return options;
}

} // namespace

int main(int argc, char** argv) {
    const Options options = ParseOptions(argc, argv);
    std::vector<Sprite> sprites = CollectSprites(options.inputs);
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
