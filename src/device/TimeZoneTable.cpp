#include "device/TimeZoneTable.h"

namespace paravue
{

namespace
{

// From the IANA time zone database, release 2025b. One row for each rule: a drop-down finds its row by the
// rule.
constexpr TimeZoneRow Rows[] = {
    {-660, "UTC+11", "Pago Pago, Niue", "Паго-Паго, Ниуэ", "Pacific/Pago_Pago Pacific/Niue"},
    {-600, "UTC+10UTC+9,M3.2.0/2,M11.1.0/2", "Adak (Aleutian Islands)", "Адак (Алеутские острова)",
     "America/Adak"},
    {-600, "UTC+10", "Honolulu, Papeete", "Гонолулу, Папеэте",
     "Pacific/Honolulu Pacific/Tahiti Pacific/Rarotonga"},
    {-570, "UTC+9:30", "Marquesas Islands", "Маркизские острова", "Pacific/Marquesas"},
    {-540, "UTC+9UTC+8,M3.2.0/2,M11.1.0/2", "Anchorage, Juneau", "Анкоридж, Джуно",
     "America/Anchorage America/Juneau"},
    {-540, "UTC+9", "Gambier Islands", "острова Гамбье", "Pacific/Gambier"},
    {-480, "UTC+8UTC+7,M3.2.0/2,M11.1.0/2", "Los Angeles", "Лос-Анджелес",
     "America/Los_Angeles America/Tijuana"},
    {-480, "UTC+8", "Pitcairn Islands", "острова Питкэрн", "Pacific/Pitcairn"},
    {-420, "UTC+7UTC+6,M3.2.0/2,M11.1.0/2", "Denver, Edmonton", "Денвер, Эдмонтон",
     "America/Denver America/Edmonton"},
    {-420, "UTC+7", "Phoenix, Hermosillo", "Финикс, Эрмосильо",
     "America/Phoenix America/Hermosillo America/Whitehorse"},
    {-360, "UTC+6UTC+5,M3.2.0/2,M11.1.0/2", "Chicago, Winnipeg", "Чикаго, Виннипег",
     "America/Chicago America/Winnipeg"},
    {-360, "UTC+6", "Mexico City, Guatemala", "Мехико, Гватемала",
     "America/Mexico_City America/Guatemala America/Costa_Rica America/Regina"},
    {-360, "UTC+6UTC+5,M9.1.6/22,M4.1.6/22", "Easter Island", "остров Пасхи", "Pacific/Easter"},
    {-300, "UTC+5UTC+4,M3.2.0/2,M11.1.0/2", "New York, Toronto", "Нью-Йорк, Торонто",
     "America/New_York America/Toronto America/Detroit"},
    {-300, "UTC+5UTC+4,M3.2.0/0,M11.1.0/1", "Havana", "Гавана", "America/Havana"},
    {-300, "UTC+5", "Bogota, Lima, Panama", "Богота, Лима, Панама",
     "America/Bogota America/Lima America/Panama"},
    {-240, "UTC+4UTC+3,M3.2.0/2,M11.1.0/2", "Halifax, Bermuda", "Галифакс, Бермуды",
     "America/Halifax Atlantic/Bermuda"},
    {-240, "UTC+4UTC+3,M9.1.6/24,M4.1.6/24", "Santiago", "Сантьяго", "America/Santiago"},
    {-240, "UTC+4", "Caracas, La Paz, Manaus", "Каракас, Ла-Пас, Манаус",
     "America/Caracas America/La_Paz America/Manaus America/Puerto_Rico"},
    {-210, "UTC+3:30UTC+2:30,M3.2.0/2,M11.1.0/2", "St. John's (Newfoundland)", "Сент-Джонс (Ньюфаундленд)",
     "America/St_Johns"},
    {-180, "UTC+3UTC+2,M3.2.0/2,M11.1.0/2", "Saint-Pierre and Miquelon", "Сен-Пьер и Микелон",
     "America/Miquelon"},
    {-180, "UTC+3", "Sao Paulo, Buenos Aires, Montevideo", "Сан-Паулу, Буэнос-Айрес, Монтевидео",
     "America/Sao_Paulo America/Argentina/Buenos_Aires America/Montevideo America/Asuncion"},
    {-120, "UTC+2UTC+1,M3.5.0/-1,M10.5.0/0", "Nuuk (Greenland)", "Нуук (Гренландия)",
     "America/Nuuk America/Scoresbysund"},
    {-120, "UTC+2", "South Georgia, Fernando de Noronha", "Южная Георгия, Фернанду-ди-Норонья",
     "Atlantic/South_Georgia America/Noronha"},
    {-60, "UTC+1UTC-0,M3.5.0/0,M10.5.0/1", "Azores", "Азорские острова", "Atlantic/Azores"},
    {-60, "UTC+1", "Praia (Cape Verde)", "Прая (Кабо-Верде)", "Atlantic/Cape_Verde"},
    {0, "UTC-0", "Reykjavik, Accra, Dakar", "Рейкьявик, Аккра, Дакар",
     "Etc/UTC Atlantic/Reykjavik Africa/Accra Africa/Dakar"},
    {0, "UTC-0UTC-1,M3.5.0/1,M10.5.0/2", "London, Dublin, Lisbon", "Лондон, Дублин, Лиссабон",
     "Europe/London Europe/Dublin Europe/Lisbon"},
    {0, "UTC-0UTC-2,M3.5.0/1,M10.5.0/3", "Troll (Antarctica)", "Тролль (Антарктида)", "Antarctica/Troll"},
    {60, "UTC-1", "Lagos, Algiers, Tunis", "Лагос, Алжир, Тунис", "Africa/Lagos Africa/Algiers Africa/Tunis"},
    {60, "UTC-1UTC-2,M3.5.0/2,M10.5.0/3", "Berlin, Paris, Madrid, Rome", "Берлин, Париж, Мадрид, Рим",
     "Europe/Berlin Europe/Paris Europe/Madrid Europe/Rome Europe/Warsaw Europe/Belgrade"},
    {120, "UTC-2", "Kaliningrad, Johannesburg, Tripoli", "Калининград, Йоханнесбург, Триполи",
     "Europe/Kaliningrad Africa/Johannesburg Africa/Tripoli"},
    {120, "UTC-2UTC-3,M3.5.0/3,M10.5.0/4", "Athens, Helsinki, Kyiv, Riga", "Афины, Хельсинки, Киев, Рига",
     "Europe/Athens Europe/Helsinki Europe/Kyiv Europe/Riga Europe/Bucharest Asia/Nicosia"},
    {120, "UTC-2UTC-3,M4.5.5/0,M10.5.4/24", "Cairo", "Каир", "Africa/Cairo"},
    {120, "UTC-2UTC-3,M3.4.4/26,M10.5.0/2", "Jerusalem", "Иерусалим", "Asia/Jerusalem"},
    {120, "UTC-2UTC-3,M3.5.0/0,M10.5.0/0", "Beirut", "Бейрут", "Asia/Beirut"},
    {180, "UTC-3", "Moscow, Minsk, Istanbul, Riyadh", "Москва, Минск, Стамбул, Эр-Рияд",
     "Europe/Moscow Europe/Minsk Europe/Istanbul Asia/Riyadh Africa/Nairobi Europe/Volgograd"},
    {210, "UTC-3:30", "Tehran", "Тегеран", "Asia/Tehran"},
    {240, "UTC-4", "Samara, Dubai, Baku, Tbilisi, Yerevan", "Самара, Дубай, Баку, Тбилиси, Ереван",
     "Europe/Samara Asia/Dubai Asia/Baku Asia/Tbilisi Asia/Yerevan Europe/Saratov"},
    {270, "UTC-4:30", "Kabul", "Кабул", "Asia/Kabul"},
    {300, "UTC-5", "Yekaterinburg, Tashkent, Almaty", "Екатеринбург, Ташкент, Алматы",
     "Asia/Yekaterinburg Asia/Tashkent Asia/Almaty Asia/Karachi"},
    {330, "UTC-5:30", "Delhi, Colombo", "Дели, Коломбо", "Asia/Kolkata Asia/Colombo"},
    {345, "UTC-5:45", "Kathmandu", "Катманду", "Asia/Kathmandu"},
    {360, "UTC-6", "Omsk, Bishkek, Dhaka", "Омск, Бишкек, Дакка", "Asia/Omsk Asia/Bishkek Asia/Dhaka"},
    {390, "UTC-6:30", "Yangon", "Янгон", "Asia/Yangon"},
    {420, "UTC-7", "Novosibirsk, Krasnoyarsk, Bangkok", "Новосибирск, Красноярск, Бангкок",
     "Asia/Novosibirsk Asia/Krasnoyarsk Asia/Bangkok Asia/Jakarta Asia/Ho_Chi_Minh Asia/Tomsk"},
    {480, "UTC-8", "Irkutsk, Beijing, Singapore, Perth", "Иркутск, Пекин, Сингапур, Перт",
     "Asia/Irkutsk Asia/Shanghai Asia/Singapore Australia/Perth Asia/Ulaanbaatar"},
    {525, "UTC-8:45", "Eucla", "Юкла", "Australia/Eucla"},
    {540, "UTC-9", "Yakutsk, Chita, Tokyo, Seoul", "Якутск, Чита, Токио, Сеул",
     "Asia/Yakutsk Asia/Chita Asia/Tokyo Asia/Seoul"},
    {570, "UTC-9:30", "Darwin", "Дарвин", "Australia/Darwin"},
    {570, "UTC-9:30UTC-10:30,M10.1.0/2,M4.1.0/3", "Adelaide", "Аделаида",
     "Australia/Adelaide Australia/Broken_Hill"},
    {600, "UTC-10", "Vladivostok, Brisbane, Port Moresby", "Владивосток, Брисбен, Порт-Морсби",
     "Asia/Vladivostok Australia/Brisbane Pacific/Port_Moresby"},
    {600, "UTC-10UTC-11,M10.1.0/2,M4.1.0/3", "Sydney, Melbourne, Hobart", "Сидней, Мельбурн, Хобарт",
     "Australia/Sydney Australia/Melbourne Australia/Hobart"},
    {630, "UTC-10:30UTC-11,M10.1.0/2,M4.1.0/2", "Lord Howe Island", "остров Лорд-Хау", "Australia/Lord_Howe"},
    {660, "UTC-11", "Magadan, Yuzhno-Sakhalinsk, Noumea", "Магадан, Южно-Сахалинск, Нумеа",
     "Asia/Magadan Asia/Sakhalin Pacific/Noumea"},
    {660, "UTC-11UTC-12,M10.1.0/2,M4.1.0/3", "Norfolk Island", "остров Норфолк", "Pacific/Norfolk"},
    {720, "UTC-12", "Petropavlovsk-Kamchatsky, Anadyr, Suva", "Петропавловск-Камчатский, Анадырь, Сува",
     "Asia/Kamchatka Asia/Anadyr Pacific/Fiji"},
    {720, "UTC-12UTC-13,M9.5.0/2,M4.1.0/3", "Auckland, Wellington", "Окленд, Веллингтон", "Pacific/Auckland"},
    {780, "UTC-13", "Nukualofa, Apia", "Нукуалофа, Апиа", "Pacific/Tongatapu Pacific/Apia"},
    {840, "UTC-14", "Kiritimati", "Киритимати", "Pacific/Kiritimati"},
};

} // namespace

std::span<const TimeZoneRow> timeZoneTable()
{
    return Rows;
}

QString timeZoneCaption(const TimeZoneRow &row, const QString &language)
{
    const int size = qAbs(row.offsetMinutes);
    QString caption = (row.offsetMinutes < 0 ? "UTC-" : "UTC+") + QString::number(size / 60);
    if (size % 60 != 0)
        caption += QStringLiteral(":%1").arg(size % 60, 2, 10, QLatin1Char('0'));
    const bool isRussian = language == QLatin1StringView("ru");
    return caption + QStringLiteral(", ") + QString::fromUtf8(isRussian ? row.russian : row.english);
}

} // namespace paravue
