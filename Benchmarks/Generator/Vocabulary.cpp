#include "Benchmarks/Generator/Vocabulary.h"

#include <array>
#include <span>

namespace quelm::bench::vocabulary {

namespace {

using Words = std::span<const std::string_view>;

constexpr std::array givenNames = std::to_array<Name>(
    {{"Ana", "ana"},       {"Luis", "luis"},     {"María", "maria"},     {"José", "jose"},       {"Carmen", "carmen"},
     {"Pablo", "pablo"},   {"Elena", "elena"},   {"Marta", "marta"},     {"Diego", "diego"},     {"Laura", "laura"},
     {"Sofía", "sofia"},   {"Javier", "javier"}, {"Teresa", "teresa"},   {"Andrés", "andres"},   {"Clara", "clara"},
     {"Hugo", "hugo"},     {"Isabel", "isabel"}, {"Ricardo", "ricardo"}, {"Nuria", "nuria"},     {"Alberto", "alberto"},
     {"Olivia", "olivia"}, {"Samuel", "samuel"}, {"Grace", "grace"},     {"William", "william"}, {"Emma", "emma"}});

constexpr std::array familyNames = std::to_array<Name>(
    {{"García", "garcia"},   {"Martín", "martin"}, {"Romero", "romero"},   {"Navarro", "navarro"},
     {"Torres", "torres"},   {"Vega", "vega"},     {"Molina", "molina"},   {"Serrano", "serrano"},
     {"Ibáñez", "ibanez"},   {"Castro", "castro"}, {"Ortega", "ortega"},   {"Delgado", "delgado"},
     {"Campos", "campos"},   {"Reyes", "reyes"},   {"Marín", "marin"},     {"Herrera", "herrera"},
     {"Peña", "pena"},       {"Soler", "soler"},   {"Fuentes", "fuentes"}, {"Carrasco", "carrasco"},
     {"Whitman", "whitman"}, {"Parker", "parker"}, {"Novak", "novak"},     {"Lindgren", "lindgren"}});

constexpr std::array streets = std::to_array<std::string_view>(
    {"Calle Mayor", "Avenida del Puerto", "Plaza Nueva", "Paseo de la Estrella", "Calle del Olmo", "Ronda Norte",
     "Camino Viejo", "Travesia del Pozo", "Gran Via", "Calle de la Rosa", "Avenida de los Pinos", "Harbour Road"});

constexpr std::array cities = std::to_array<std::string_view>(
    {"Madrid", "Sevilla", "Valencia", "Bilbao", "Zaragoza", "Granada", "Cartagena", "Salamanca", "Lima", "Quito",
     "Rosario", "Monterrey", "Toledo", "Burgos", "Cuenca", "Soria"});

constexpr std::array tags = std::to_array<std::string_view>(
    {"new", "priority", "wholesale", "export", "seasonal", "fragile", "returned", "gift", "online", "contract", "trial",
     "archive", "express", "bulk", "partner", "review"});

constexpr std::array topics = std::to_array<std::string_view>(
    {"catalogue", "invoice", "delivery", "warehouse", "payment", "account", "schedule", "inventory", "support",
     "shipment", "discount", "supplier", "register", "forecast", "transfer", "complaint"});

constexpr std::array plainWords = std::to_array<std::string_view>(
    {"the",     "river",   "of",      "a",       "morning", "under",    "quiet",  "and",     "copper",  "window",
     "over",    "distant", "engine",  "to",      "carries", "letters",  "from",   "harbour", "with",    "eleven",
     "barrels", "in",      "winter",  "because", "nobody",  "measured", "its",    "weight",  "before",  "sunset",
     "however", "each",    "account", "remains", "open",    "until",    "paper",  "arrives", "by",      "rail",
     "several", "bridges", "between", "towns",   "need",    "repair",   "though", "traffic", "doubles", "yearly"});

constexpr std::array spanishWords = std::to_array<std::string_view>(
    {"mañana", "corazón", "el",    "niño",   "bebió",    "agua",     "fría",  "según",   "la",      "versión",
     "más",    "antigua", "del",   "código", "página",   "pingüino", "años",  "después", "también", "así",
     "llegó",  "canción", "única", "señal",  "¿cuándo?", "¡ojalá!",  "jamás", "está",    "aquí",    "árbol"});

constexpr std::array cyrillicWords =
    std::to_array<std::string_view>({"вечер", "над",  "рекой",  "стоит", "тихий",  "город", "и",       "поезд",
                                     "идёт",  "на",   "север",  "через", "старый", "мост",  "где",     "никто",
                                     "не",    "ждёт", "письма", "с",     "почтой", "зимой", "подъезд", "объявление"});

constexpr std::array chineseWords = std::to_array<std::string_view>(
    {"今天", "天气", "很好", "我们", "一起", "去",   "河边", "散步", "数据", "文件", "编辑", "保存",
     "用户", "名称", "时间", "目录", "搜索", "结果", "列表", "页面", "中文", "字符", "測試", "資料"});

constexpr std::array japaneseWords = std::to_array<std::string_view>(
    {"ファイル", "を",   "開く", "保存",   "する", "データ", "の",   "一覧", "こんにちは", "世界", "検索", "結果",
     "から",     "選ぶ", "文字", "コード", "東京", "まで",   "電車", "で",   "行く",       "編集", "画面", "です"});

constexpr std::array emoji =
    std::to_array<std::string_view>({"😀", "🚀", "🎉", "👩‍💻", "👨‍👩‍👧‍👦", "🇪🇸", "👍🏽", "🌍",
                                     "🔥", "💡", "📦", "🧭", "🏳️‍🌈", "✅", "🍋", "🎼"});

struct ScriptWords {
    Words words;
    std::string_view separator;
};

constexpr std::array scripts = std::to_array<ScriptWords>(
    {{spanishWords, " "}, {cyrillicWords, " "}, {chineseWords, ""}, {japaneseWords, ""}, {emoji, " "}});

void appendWords(std::string& text, std::size_t length, const ScriptWords& source, Random& random) {
    const std::size_t end = text.size() + length;
    text += random.pick(source.words);
    while (text.size() < end) {
        text += source.separator;
        text += random.pick(source.words);
    }
}

} // namespace

const Name& givenName(Random& random) {
    return random.pick(givenNames);
}

const Name& familyName(Random& random) {
    return random.pick(familyNames);
}

std::string_view street(Random& random) {
    return random.pick(streets);
}

std::string_view city(Random& random) {
    return random.pick(cities);
}

std::string_view tag(Random& random) {
    return random.pick(tags);
}

std::string_view topic(Random& random) {
    return random.pick(topics);
}

void appendProse(std::string& text, std::size_t length, Random& random) {
    appendWords(text, length, {plainWords, " "}, random);
}

void appendProse(std::string& text, std::size_t length, Script script, Random& random) {
    appendWords(text, length, scripts[static_cast<std::size_t>(script)], random);
}

} // namespace quelm::bench::vocabulary
