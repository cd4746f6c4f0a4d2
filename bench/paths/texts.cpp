#include "bench/paths/texts.h"

#include <algorithm>
#include <cstddef>

namespace zorvel {
namespace bench {
namespace {

const Texts ascii = {
    "/srv/deploy/releases/2026-11-20/application/web/static/images",
    "/mnt/share/projects/zorvel/build/linux/objects/paths/multibyte_string.o",
    "/home/operator/Documents/Reports/Quarterly/2026/Q3/summary-final.txt",
    "/srv/deploy/site/config/.deploy_write_lock",
    "/var/lib/application/cache/thumbnails/large/3f/3f2a9c81d0.png",
    "/opt/vendor/product-7.2/plugins/com.example.reporting/resources/templates/invoice/en_GB/header.html",
    "//fileserver/department/shared/Templates/Letters/Confirmation of Order.docx",
    "/srv/deploy/releases/current/application/WEB-INF/classes/messages_en.properties",
};

/// The same kind of path with names in Japanese, many of which end in a byte 0x5C: code page 932, byte for byte.
const Texts japanese = {
    // /srv/deploy/資料/2026年/予定表/機能/images
    "/srv/deploy/\216\221\227\277/2026\224\116/\227\134\222\350\225\134/\213\100\224\134/images",
    // /mnt/share/プロジェクト/日本語ソフト/build/表示/objects.o
    "/mnt/share/\203\166\203\215\203\127\203\106\203\116\203\147/\223\372\226\173\214\352\203\134\203\164\203\147"
    "/build/\225\134\216\246/objects.o",
    // /home/operator/書類/報告/四半期/2026/Q3/summary-最終.txt
    "/home/operator/\217\221\227\336/\225\361\215\220/\216\154\224\274\212\372/2026/Q3/summary-\215\305\217\111.txt",
    // /srv/deploy/新規申請/.deploy_write_lock
    "/srv/deploy/\220\126\213\113\220\134\220\277/.deploy_write_lock",
    // /var/lib/アプリ/キャッシュ/画像/large/3f/3f2a9c81d0.png
    "/var/lib/\203\101\203\166\203\212/\203\114\203\203\203\142\203\126\203\205/\211\346\221\234/large/3f/"
    "3f2a9c81d0.png",
    // /opt/製品-7.2/プラグイン/帳票/テンプレート/請求書/ja_JP/header.html
    "/opt/\220\273\225\151-7.2/\203\166\203\211\203\117\203\103\203\223/\222\240\225\133/\203\145\203\223\203\166"
    "\203\214\201\133\203\147/\220\277\213\201\217\221/ja_JP/header.html",
    // //fileserver/部門/共有/ひな形/手紙/注文確認.docx
    "//fileserver/\225\224\226\345/\213\244\227\114/\202\320\202\310\214\140/\216\350\216\206/\222\215\225\266\212\155"
    "\224\106.docx",
    // /srv/deploy/releases/現在/application/ソース/messages_ja.properties
    "/srv/deploy/releases/\214\273\215\335/application/\203\134\201\133\203\130/messages_ja.properties",
};

bool isLead(char byte)
{
    const unsigned char value = static_cast<unsigned char>(byte);
    return (value >= 0x81 && value <= 0x9F) || (value >= 0xE0 && value <= 0xFC);
}

std::string capitals(std::string text, bool doubleByte)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (doubleByte && isLead(text[i]))
            ++i;
        else if (text[i] >= 'a' && text[i] <= 'z')
            text[i] = static_cast<char>(text[i] - 'a' + 'A');
    }
    return text;
}

}  // namespace

const std::vector<CodePage>& codePages()
{
    static const std::vector<CodePage> pages = {
        {"ascii", "C.UTF-8", ascii},
        {"932", "ja_JP.WINDOWS-31J", japanese},
    };
    return pages;
}

Texts inCapitals(const Texts& texts, bool doubleByte)
{
    Texts changed;
    for (const std::string& text : texts)
        changed.push_back(capitals(text, doubleByte));
    return changed;
}

bool isDoubleByte(const Texts& texts)
{
    return std::any_of(texts[0].begin(), texts[0].end(), [](char byte) { return (byte & 0x80) != 0; });
}

}  // namespace bench
}  // namespace zorvel
