#include "platform/win32/gdi/text_engine.h"

#include "platform/win32/gdi/font_files.h"
#include "platform/win32/gdi/text_library.h"
#include "platform/win32/kernel/never_destroyed.h"
#include "platform/win32/screen/geometry.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <mutex>
#include <span>
#include <unordered_map>

namespace win32 {

namespace {

// Faces that programs name and the families that stand in for them. Without these rules metrics and pictures would come
// from different faces, and a machine's own settings would decide.
struct Alias {
    const char* face;
    const char* family;
};
constexpr const char* kChinese = "WenQuanYi Zen Hei";
constexpr const char* kLatin = "DejaVu Sans";
constexpr const char* kFixed = "DejaVu Sans Mono";
constexpr Alias kAliases[] = {
    { "宋体", kChinese },         { "SimSun", kChinese },
    { "新宋体", kChinese },       { "NSimSun", kChinese },
    { "黑体", kChinese },         { "SimHei", kChinese },
    { "微软雅黑", kChinese },     { "Microsoft YaHei", kChinese },
    { "MingLiU", kChinese },      { "PMingLiU", kChinese },
    { "MS Gothic", kChinese },    { "Tahoma", kLatin },
    { "Arial", kLatin },          { "Verdana", kLatin },
    { "MS Shell Dlg", kLatin },   { "MS Shell Dlg 2", kLatin },
    { "MS Sans Serif", kLatin },  { "Microsoft Sans Serif", kLatin },
    { "Segoe UI", kLatin },       { "System", kLatin },
    { "Courier New", kFixed },    { "Fixedsys", kFixed },
    { "Lucida Console", kFixed },
};

std::vector<std::string>& font_folders()
{
    static NeverDestroyed<std::vector<std::string>> folders;
    return folders.get();
}

// One configuration for every machine: the folders, the aliases above and one way of rendering.
std::string configuration()
{
    std::string xml = R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>)";
    if (font_folders().empty()) {
        xml += R"(<dir>/usr/share/fonts</dir><dir>/usr/local/share/fonts</dir><dir prefix="xdg">fonts</dir>)";
        xml += R"(<dir>~/.fonts</dir>)";
    }
    for (const std::string& folder : font_folders())
        xml += "<dir>" + folder + "</dir>";
    xml += R"(<cachedir>/var/cache/fontconfig</cachedir><cachedir prefix="xdg">fontconfig</cachedir>)";
    const auto alias = [&xml](const char* face, std::initializer_list<const char*> families) {
        xml += std::string(R"(<alias binding="same"><family>)") + face + "</family><prefer>";
        for (const char* family : families)
            xml += std::string("<family>") + family + "</family>";
        xml += "</prefer></alias>";
    };
    for (const Alias& entry : kAliases)
        alias(entry.face, { entry.family });
    xml +=
        R"(<match target="pattern"><edit name="family" mode="append_last" binding="strong"><string>DejaVu Sans</string>)";
    xml += R"(<string>WenQuanYi Zen Hei</string></edit></match>)";
    xml += R"(<match target="font"><edit name="antialias" mode="assign"><bool>true</bool></edit>)";
    xml += R"(<edit name="hinting" mode="assign"><bool>true</bool></edit>)";
    xml += R"(<edit name="hintstyle" mode="assign"><const>hintslight</const></edit>)";
    xml += R"(<edit name="autohint" mode="assign"><bool>false</bool></edit>)";
    xml += R"(<edit name="embeddedbitmap" mode="assign"><bool>false</bool></edit>)";
    xml += R"(<edit name="rgba" mode="assign"><const>none</const></edit></match></fontconfig>)";
    return xml;
}

// The process's font map.
class Engine {
public:
    // Null: the libraries are not installed. Called under the lock.
    static Engine* get();

    const TextLibrary& library() const { return library_; }
    PangoContext* context(Reading reading) const { return contexts_[static_cast<std::size_t>(reading)]; }
    // Takes in font files that were added or removed since the last call; changes when they did.
    std::uint64_t fonts_version();

private:
    explicit Engine(const TextLibrary& library);

    const TextLibrary& library_;
    FcConfig* config_;
    PangoFontMap* map_;
    PangoContext* contexts_[2];
    std::uint64_t version_ = 0;
    friend class NeverDestroyed<Engine>;
};

Engine::Engine(const TextLibrary& library) : library_(library), config_(library.FcConfigCreate())
{
    const std::string xml = configuration();
    library.FcConfigParseAndLoadFromMemory(config_, reinterpret_cast<const FcChar8*>(xml.c_str()), FcTrue);
    library.FcConfigBuildFonts(config_);
    library.FcConfigSetCurrent(config_); // Pango substitutes by the current one, whatever its map is told
    map_ = library.pango_ft2_font_map_new();
    for (const Reading reading : { Reading::left_to_right, Reading::right_to_left }) {
        PangoContext* context = library.pango_font_map_create_context(map_);
        library.pango_context_set_language(context, library.pango_language_from_string("zh-cn"));
        library.pango_context_set_base_dir(context, reading == Reading::left_to_right ? PANGO_DIRECTION_LTR
                                                                                      : PANGO_DIRECTION_RTL);
        contexts_[static_cast<std::size_t>(reading)] = context;
    }
}

Engine* Engine::get()
{
    static Engine* const engine = []() -> Engine* {
        const TextLibrary* library = TextLibrary::get();
        if (!library)
            return nullptr;
        static NeverDestroyed<Engine> instance(*library);
        return &instance.get();
    }();
    return engine;
}

std::uint64_t Engine::fonts_version()
{
    if (added_fonts_version() == version_)
        return version_;
    const AddedFonts fonts = added_fonts();
    version_ = fonts.version;
    library_.FcConfigAppFontClear(config_);
    for (const std::string& path : fonts.paths)
        library_.FcConfigAppFontAddFile(config_, reinterpret_cast<const FcChar8*>(path.c_str()));
    library_.pango_fc_font_map_config_changed(reinterpret_cast<PangoFcFontMap*>(map_));
    return version_;
}

std::mutex& text_mutex()
{
    static NeverDestroyed<std::mutex> mutex;
    return mutex.get();
}

} // namespace

void set_font_folders(std::vector<std::string> folders)
{
    font_folders() = std::move(folders);
}

TextMask::TextMask(const RECT& place)
    : area(is_empty(place) ? RECT{} : place), ink{},
      pixels(static_cast<std::size_t>(width_of(area)) * static_cast<std::size_t>(height_of(area)))
{}

namespace {

// A line as glyphs, from left to right.
class ShapedLine {
public:
    // A stretch of one face and direction.
    struct Run {
        PangoItem* item = nullptr;
        PangoGlyphString* glyphs = nullptr;
        int width = 0; // pixels
    };

    explicit ShapedLine(const TextLibrary& library) : library_(library) {}
    ShapedLine(const ShapedLine&) = delete;
    ShapedLine& operator=(const ShapedLine&) = delete;
    ~ShapedLine();

    // Takes the item over.
    void add(PangoItem* item, std::string_view utf8);
    std::span<const Run> runs() const { return runs_; }
    int width() const { return width_; }

    std::shared_ptr<const TextMask> mask; // null: not drawn yet, or too large to be kept

private:
    const TextLibrary& library_;
    std::vector<Run> runs_;
    int width_ = 0;
};

ShapedLine::~ShapedLine()
{
    for (const Run& run : runs_) {
        library_.pango_glyph_string_free(run.glyphs);
        library_.pango_item_free(run.item);
    }
}

void ShapedLine::add(PangoItem* item, std::string_view utf8)
{
    Run run{ item, library_.pango_glyph_string_new(), 0 };
    library_.pango_shape_with_flags(utf8.data() + item->offset, item->length, utf8.data(),
                                    static_cast<int>(utf8.size()), &item->analysis, run.glyphs,
                                    PANGO_SHAPE_ROUND_POSITIONS);
    run.width = PANGO_PIXELS(library_.pango_glyph_string_get_width(run.glyphs));
    runs_.push_back(run);
    width_ += run.width;
}

} // namespace

// A request matched to faces, with the lines that were made last: what is measured is mostly drawn next, and what was
// drawn is drawn again. All of it happens under the lock.
class TextFont::Match {
public:
    Match(Engine& engine, const FontRequest& request, std::uint64_t version);
    ~Match();
    Match(const Match&) = delete;
    Match& operator=(const Match&) = delete;

    std::uint64_t version() const { return version_; }
    const FontMetrics& metrics() const { return metrics_; }
    int width(std::string_view utf8, Reading reading) { return line(utf8, reading).width(); }
    std::shared_ptr<const TextMask> mask(std::string_view utf8, Reading reading, const RECT& wanted);

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    using Lines = std::unordered_map<std::string, ShapedLine, Hash, std::equal_to<>>;

    void set_em(int em);
    void find_metrics(int height);
    bool is_too_light(PangoFont* font) const;
    ShapedLine& line(std::string_view utf8, Reading reading);
    void render(const ShapedLine& line, TextMask& mask) const;
    void shape(std::string_view utf8, Reading reading, ShapedLine& line) const;

    Engine& engine_;
    const TextLibrary& library_;
    const int weight_;
    const std::uint64_t version_;
    PangoFontDescription* description_;
    FontMetrics metrics_;
    Lines lines_[2];             // by reading
    std::size_t remembered_ = 0; // bytes of their texts and masks
};

TextFont::Match::Match(Engine& engine, const FontRequest& request, std::uint64_t version)
    : engine_(engine), library_(engine.library()), weight_(request.weight), version_(version),
      description_(library_.pango_font_description_new())
{
    library_.pango_font_description_set_family(description_, request.family.c_str());
    library_.pango_font_description_set_weight(description_, static_cast<PangoWeight>(request.weight));
    library_.pango_font_description_set_style(description_, request.italic ? PANGO_STYLE_ITALIC : PANGO_STYLE_NORMAL);
    find_metrics(request.height);
}

TextFont::Match::~Match()
{
    library_.pango_font_description_free(description_);
}

void TextFont::Match::set_em(int em)
{
    metrics_.em = em;
    library_.pango_font_description_set_absolute_size(description_, static_cast<double>(em) * PANGO_SCALE);
}

void TextFont::Match::find_metrics(int height)
{
    set_em(std::abs(height));
    double ascent = 0.93; // of the em; when the face does not say
    double descent = 0.24;
    if (PangoFont* font = library_.pango_context_load_font(engine_.context(Reading::left_to_right), description_)) {
        hb_font_t* face = library_.pango_font_get_hb_font(font);
        hb_font_extents_t extents{};
        int x_scale = 0;
        int y_scale = 0;
        library_.hb_font_get_scale(face, &x_scale, &y_scale);
        if (library_.hb_font_get_h_extents(face, &extents) && y_scale != 0 && extents.ascender != extents.descender) {
            ascent = std::abs(static_cast<double>(extents.ascender) / y_scale);
            descent = std::abs(static_cast<double>(extents.descender) / y_scale);
        }
        library_.g_object_unref(font);
    }
    if (height > 0) {
        metrics_.ascent = static_cast<int>(std::lround(height * ascent / (ascent + descent)));
        metrics_.descent = height - metrics_.ascent;
        set_em(std::max(1, static_cast<int>(std::lround(height / (ascent + descent)))));
    } else {
        metrics_.ascent = static_cast<int>(std::ceil(metrics_.em * ascent));
        metrics_.descent = static_cast<int>(std::ceil(metrics_.em * descent));
    }
}

ShapedLine& TextFont::Match::line(std::string_view utf8, Reading reading)
{
    constexpr std::size_t kMostRemembered = 256 << 10;
    Lines& lines = lines_[static_cast<std::size_t>(reading)];
    if (const auto found = lines.find(utf8); found != lines.end())
        return found->second;
    if (remembered_ >= kMostRemembered) {
        for (Lines& old : lines_)
            old.clear();
        remembered_ = 0;
    }
    remembered_ += utf8.size();
    ShapedLine& line = lines.try_emplace(std::string(utf8), library_).first->second;
    shape(utf8, reading, line);
    return line;
}

void TextFont::Match::shape(std::string_view utf8, Reading reading, ShapedLine& line) const
{
    if (utf8.empty())
        return;
    PangoContext* context = engine_.context(reading);
    library_.pango_context_set_font_description(context, description_);
    GList* in_order = library_.pango_itemize(context, utf8.data(), 0, static_cast<int>(utf8.size()), nullptr, nullptr);
    GList* items = library_.pango_reorder_items(in_order);
    library_.g_list_free(in_order);
    for (const GList* node = items; node; node = node->next)
        line.add(static_cast<PangoItem*>(node->data), utf8);
    library_.g_list_free(items);
}

// Whether bold was asked for and the face that answered is none: Pango draws it as it is.
bool TextFont::Match::is_too_light(PangoFont* font) const
{
    constexpr int kBoldFrom = 600;
    if (weight_ < kBoldFrom)
        return false;
    PangoFontDescription* description = library_.pango_font_describe(font);
    const bool is_light = library_.pango_font_description_get_weight(description) < kBoldFrom;
    library_.pango_font_description_free(description);
    return is_light;
}

std::shared_ptr<const TextMask> TextFont::Match::mask(std::string_view utf8, Reading reading, const RECT& wanted)
{
    constexpr std::int64_t kMostKept = 128 << 10; // pixels
    ShapedLine& shaped = line(utf8, reading);
    if (shaped.mask)
        return shaped.mask;
    // Glyphs may reach out of their cell: slanted and bold ones, marks of fall-back faces.
    const int overhang = metrics_.em / 2 + 2;
    const RECT whole{ -overhang, -metrics_.ascent - overhang, shaped.width() + overhang, metrics_.descent + overhang };
    const bool is_kept = std::int64_t{ width_of(whole) } * height_of(whole) <= kMostKept;
    auto drawn = std::make_shared<TextMask>(is_kept ? whole : intersection(whole, wanted));
    render(shaped, *drawn);
    if (is_kept) {
        shaped.mask = drawn;
        remembered_ += drawn->pixels.size();
    }
    return drawn;
}

namespace {

// The smallest rectangle around what is covered.
RECT ink_of(const TextMask& mask)
{
    RECT ink{};
    for (int y = mask.area.top; y < mask.area.bottom; y++) {
        const std::uint8_t* const begin = mask.row(mask.area.left, y);
        const std::uint8_t* const end = begin + width_of(mask.area);
        const auto is_covered = [](std::uint8_t coverage) { return coverage != 0; };
        const std::uint8_t* const first = std::find_if(begin, end, is_covered);
        if (first == end)
            continue;
        const std::uint8_t* last = end;
        while (last[-1] == 0)
            last--;
        const int left = mask.area.left;
        ink = hull(ink, { left + static_cast<int>(first - begin), y, left + static_cast<int>(last - begin), y + 1 });
    }
    return ink;
}

} // namespace

void TextFont::Match::render(const ShapedLine& shaped, TextMask& mask) const
{
    FT_Bitmap bitmap{};
    bitmap.rows = static_cast<unsigned>(height_of(mask.area));
    bitmap.width = static_cast<unsigned>(width_of(mask.area));
    bitmap.pitch = width_of(mask.area);
    bitmap.buffer = mask.pixels.data();
    bitmap.num_grays = 256;
    bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
    int x = -mask.area.left;
    for (const ShapedLine::Run& run : shaped.runs()) {
        PangoFont* font = run.item->analysis.font;
        library_.pango_ft2_render(&bitmap, font, run.glyphs, x, -mask.area.top);
        if (is_too_light(font)) // drawn once more, a pixel further: thicker, and as wide as measured
            library_.pango_ft2_render(&bitmap, font, run.glyphs, x + 1, -mask.area.top);
        x += run.width;
    }
    mask.ink = ink_of(mask);
}

std::shared_ptr<TextFont> TextFont::of(FontRequest request)
{
    static NeverDestroyed<std::array<std::shared_ptr<TextFont>, 8>> kept; // the last that was asked for comes first
    std::shared_ptr<TextFont> moved; // to the place of the next one; what is left at the end goes after the lock
    const std::lock_guard lock(text_mutex());
    const auto slots = std::span(kept.get());
    const auto found =
        std::find_if(slots.begin(), slots.end(), [&](const auto& font) { return font && font->request_ == request; });
    std::shared_ptr<TextFont> font = found != slots.end() ? *found : std::make_shared<TextFont>(std::move(request));
    moved = font;
    for (std::shared_ptr<TextFont>& slot : slots) {
        std::swap(slot, moved);
        if (!moved || moved == font)
            break;
    }
    return font;
}

TextFont::TextFont(FontRequest request) : request_(std::move(request)) {}

TextFont::~TextFont()
{
    const std::lock_guard lock(text_mutex());
    match_.reset();
}

// Null: text cannot be had.
TextFont::Match* TextFont::match()
{
    Engine* engine = Engine::get();
    if (!engine)
        return nullptr;
    const std::uint64_t version = engine->fonts_version();
    if (!match_ || match_->version() != version)
        match_ = std::make_unique<Match>(*engine, request_, version);
    return match_.get();
}

bool TextFont::measure(std::string_view utf8, Reading reading, FontMetrics& metrics, int& width)
{
    const std::lock_guard lock(text_mutex());
    Match* font = match();
    if (!font)
        return false;
    metrics = font->metrics();
    width = font->width(utf8, reading);
    return true;
}

std::shared_ptr<const TextMask> TextFont::mask(std::string_view utf8, Reading reading, const RECT& wanted)
{
    const std::lock_guard lock(text_mutex());
    Match* font = match();
    return font ? font->mask(utf8, reading, wanted) : nullptr;
}

} // namespace win32
