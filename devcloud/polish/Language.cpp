#include "devcloud/polish/Language.h"

#include "devcloud/polish/Characters.h"
#include "devcloud/polish/EnglishWords.h"
#include "devcloud/polish/WordList.h"
#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <array>
#include <unordered_map>

namespace tavrin::devcloud {
namespace {

// Pairs, the traditional form first, that stand for one word in both scripts.
constexpr std::u32string_view pairs =
    U"們们這这個个來来時时說说會会對对學学發发為为過过還还沒没點点開开關关見见話话問问題题國国"
    U"間间門门東东車车長长電电動动機机業业務务員员報报產产經经濟济現现實实際际應应該该當当從从"
    U"後后給给讓让請请誰谁麼么嗎吗幾几錢钱買买賣卖聽听讀读寫写書书記记認认識识語语論论議议設设"
    U"計计許许試试證证訴诉詞词謝谢譯译護护讚赞變变邊边遠远運运進进連连週周遲迟選选郵邮醫医鐘钟"
    U"鐵铁銀银錯错鍵键鎖锁陽阳陳陈隊队險险隨随雖虽難难雞鸡離离雲云靈灵響响頁页項项順顺須须頭头"
    U"頻频顏颜願愿類类顧顾風风飛飞飯饭飲饮館馆馬马驗验驚惊體体魚鱼鳥鸟麗丽黃黄齊齐龍龙萬万與与"
    U"專专兩两嚴严並并喪丧豐丰臨临舉举義义樂乐習习鄉乡亂乱爭争虧亏億亿僅仅倉仓價价眾众優优傷伤"
    U"傳传倫伦偉伟側侧傑杰備备兒儿黨党興兴養养獸兽內内寧宁農农馮冯決决況况凍冻準准幫帮減减鳳凤"
    U"憑凭劃划則则剛刚創创別别劇剧勸劝辦办勞劳勢势勝胜區区華华協协單单衛卫壓压廳厅歷历厲厉縣县"
    U"參参雙双葉叶號号嘆叹嚇吓聞闻啟启喚唤團团園园圍围圖图圓圆場场壞坏塊块堅坚壇坛墊垫夢梦夾夹"
    U"獎奖婦妇媽妈嬰婴孫孙寶宝審审憲宪宮宫寬宽賓宾導导將将爾尔嘗尝層层屬属島岛嶺岭歲岁崗岗幣币"
    U"帥帅師师帳帐帶带廣广莊庄慶庆庫库廢废彎弯彈弹強强歸归錄录徹彻徵征態态憶忆懷怀總总戀恋懇恳"
    U"惡恶悶闷愛爱慣惯憤愤懶懒戲戏戰战戶户撲扑執执擴扩掃扫揚扬擾扰撫抚搶抢擁拥揀拣擬拟擇择擊击"
    U"擋挡擠挤揮挥損损換换據据擔担攝摄攜携擺摆敵敌數数齋斋斷断無无舊旧曠旷顯显曉晓暫暂術术殺杀"
    U"雜杂權权條条楊杨極极構构槍枪檢检樓楼標标樹树橋桥樣样檔档橫横歡欢歐欧氣气漢汉湯汤溝沟淚泪"
    U"濃浓測测潔洁灑洒漁渔溫温灣湾濕湿滿满濾滤災灾爐炉煩烦燈灯燒烧熱热犧牺狀状猶犹獨独獲获環环"
    U"瑪玛畫画療疗瘋疯盡尽監监盤盘礙碍確确禮礼禍祸種种積积稱称穩稳窮穷窩窝競竞筆笔簡简糧粮緊紧"
    U"糾纠紅红約约級级紀纪純纯紙纸納纳紛纷細细終终組组結结絕绝統统絲丝綠绿維维網网緒绪線线練练"
    U"績绩續续縮缩織织罰罚羅罗聖圣聯联職职聰聪腦脑臉脸臺台艱艰藝艺節节蘇苏蘭兰蘋苹處处虛虚蟲虫"
    U"補补裝装裡里複复觀观規规覺觉覽览觸触訂订訊讯討讨訓训詢询詳详誤误課课調调談谈諾诺謀谋講讲"
    U"貓猫貝贝負负財财貨货責责貴贵費费資资賴赖賬账質质贈赠贏赢趕赶趨趋跡迹踐践軟软軍军輕轻較较"
    U"載载輛辆輪轮輯辑輸输轉转鄰邻醬酱釋释針针鋼钢錶表鏡镜鬧闹閱阅裏里闆板陣阵陰阴階阶麵面豈岂";

/// Of those, the traditional ones that Japanese writes too.
constexpr std::u32string_view alsoJapanese =
    U"個時為過還開見話問題間門東車長電動機業務員報現際該後給請誰幾買書記認識語論議設計許試訴詞"
    U"謝護遠運進連週選郵鐘銀錯鍵鎖陽陳隊難離雲響頁項順須頭頻願類顧風飛飯飲館馬驚魚鳥麗龍喪臨義"
    U"習億僅倉優傷倫偉側傑備興養寧農馮決況凍準減鳳劃則剛創別劇勢勝華協衛葉嘆聞喚園場塊堅壇墊夢"
    U"婦嬰孫審憲宮賓導爾嘗島嶺崗幣帥師帳莊慶庫強徹徵態憶懇悶愛慣憤戶撲執掃揚撫擁擬揮損換攜敵無"
    U"暫術楊極構槍標樹橋檔橫漢湯溝淚濃測潔漁濾災煩熱猶獲環畫療監盤礙確禍種積窮競筆簡糧緊糾紅約"
    U"級紀純紙納紛細終組結統維網緒線練績縮織罰羅聖聯職節蘇蘭補裏複規訂訊討訓詢詳誤課調談諾謀講"
    U"貝負財貨責貴費資質贈跡軟軍較載輪輯輸針鋼鏡陣陰階隨邊險並縣獎輕層階豈";

/// And the simplified ones.
constexpr std::u32string_view simplifiedAlsoJapanese =
    U"会学点来国当医万与旧担双参号写台体没争乱党内宝属帅师断条楼欧独礼称虫触随黄云后里面表板周"
    U"准几并征划杰叶叹尝据机灯炉状湿温横数虚践装将尽区恋携猫湾画庄泪强";

/// And those of one form that only Chinese writes.
constexpr std::u32string_view chineseWords = U"你您她它咱很呢吧哪怎啊呀啦哦嗯呃爸奶找吃喝跟怕";
constexpr auto chinesePhrases =
    std::to_array<std::u32string_view>({U"都是", U"都不", U"就是", U"可以", U"今天", U"明天",
        U"昨天", U"不行", U"的人", U"没有", U"現在在", U"负责", U"負責", U"之前", U"祝好", U"好的",
        U"收到", U"謝謝", U"剛剛", U"不用谢", U"不用謝", U"大家好", U"看看"});

const std::unordered_map<char32_t, char32_t>& simplifiedForms()
{
    static const auto forms = [] {
        std::unordered_map<char32_t, char32_t> result;
        for (std::size_t at = 0; at + 1 < pairs.size(); at += 2) {
            result.emplace(pairs[at], pairs[at + 1]);
        }
        return result;
    }();
    return forms;
}

/// The characters that nobody writes but in Chinese.
std::u32string onlyChineseCharacters()
{
    std::u32string result(chineseWords);
    for (const auto& [traditional, simple] : simplifiedForms()) {
        if (!isOneOf(alsoJapanese, traditional))
            result += traditional;
        if (!isOneOf(simplifiedAlsoJapanese, simple))
            result += simple;
    }
    std::ranges::sort(result);
    return result;
}

/// 了, 是, 我, 把 and 他 are Chinese but in a few words that Japanese shares.
bool isChineseParticle(std::u32string_view text, std::size_t at)
{
    const char32_t before = at > 0 ? text[at - 1] : U'\0';
    const char32_t after = at + 1 < text.size() ? text[at + 1] : U'\0';
    switch (text[at]) {
    case U'了':
        return !isOneOf(U"完終终修魅満校読", before) && !isOneOf(U"解承見", after);
    case U'是':
        return before != U'社' && !isOneOf(U"非正認", after);
    case U'我':
        return !isOneOf(U"慢流孫", after);
    case U'把':
        return before != U'一' && !isOneOf(U"握持捉", after);
    case U'他':
        return before != U'其' && !isOneOf(U"人社国方言", after);
    default:
        return false;
    }
}

bool isSurelyChinese(std::u32string_view text)
{
    static const std::u32string onlyChinese = onlyChineseCharacters();
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (std::ranges::binary_search(onlyChinese, text[at]) || isChineseParticle(text, at))
            return true;
    }
    return std::ranges::any_of(chinesePhrases,
        [text](auto phrase) { return text.find(phrase) != std::u32string_view::npos; });
}

/// The words of Latin letters in a text, by what they say about its language.
struct LatinWords {
    std::size_t all = 0;
    std::size_t english = 0;
    std::size_t onlyEnglish = 0;
    std::size_t mostlyEnglish = 0; ///< One that hardly any other language has.
    std::size_t borrowed = 0; ///< One of English that people say in other languages.
    std::size_t foreign = 0;

    void add(std::u32string_view word)
    {
        const std::u32string small = folded(word);
        ++all;
        static constexpr auto loans = std::to_array<std::u32string_view>(
            {U"hello", U"yes", U"just", U"like", U"password", U"sunday", U"monday"});
        if (isOnlyEnglish(small)) {
            ++(contains(loans, small) ? borrowed : onlyEnglish);
            ++english;
            return;
        }
        static constexpr auto mostly = std::to_array<std::u32string_view>(
            {U"it", U"my", U"if", U"we", U"his", U"not", U"of", U"it's"});
        mostlyEnglish += contains(mostly, small) ? 1U : 0U;
        english += isEnglish(small) ? 1U : 0U;
        // "MIT" is a school.
        const bool isShortened = std::ranges::all_of(word, isAsciiUpper);
        foreign += isForeign(small) && !isShortened ? 1U : 0U;
    }

    [[nodiscard]] bool areSurelyEnglish() const
    {
        // So many are no chance, if there are no others and one is hardly ever foreign.
        constexpr std::size_t manyWords = 4;
        const bool isLikely = borrowed > 0 || (mostlyEnglish > 0 && all >= manyWords);
        const bool hasProof = onlyEnglish > 0 || (isLikely && english == all);
        return hasProof && foreign == 0 && 5 * english >= 3 * all;
    }
};

/// "um" and the like, which no language owns.
bool isSound(std::u32string_view word)
{
    static constexpr auto sounds =
        std::to_array<std::u32string_view>({U"um", U"umm", U"uh", U"uhh", U"uhm", U"erm", U"hmm"});
    return std::ranges::find(sounds, folded(word)) != sounds.end();
}

/// An address or a number belongs to no language.
bool belongsToNoLanguage(std::u32string_view run)
{
    const std::size_t dot = run.find(U'.');
    const bool isDotted = dot != std::u32string_view::npos && dot > 0 && dot + 1 < run.size()
        && isLatin(run[dot + 1]);
    return isDotted || run.find_first_of(U"/@\\_0123456789") != std::u32string_view::npos;
}

/// Counts the words of a stretch without white space and Han characters.
void addWords(std::u32string_view run, LatinWords& words)
{
    constexpr std::u32string_view apostrophes = U"'’";
    for (auto at = std::ranges::find_if(run, isLatin); at != run.end();
         at = std::find_if(at, run.end(), isLatin)) {
        const auto end = std::find_if_not(
            at, run.end(), [](char32_t c) { return isLatin(c) || c == U'\'' || c == U'’'; });
        const std::u32string_view word(at, end);
        const std::u32string_view core = word.substr(0, word.find_last_not_of(apostrophes) + 1);
        if (!isSound(core))
            words.add(core);
        at = end;
    }
}

LatinWords latinWords(std::u32string_view text)
{
    const auto separates = [](char32_t c) { return isBlank(c) || c == U'\n' || isHan(c); };
    LatinWords words;
    for (auto at = text.begin(); at != text.end();) {
        const auto end = std::find_if(at, text.end(), separates);
        if (!belongsToNoLanguage({at, end}))
            addWords({at, end}, words);
        at = std::find_if_not(end, text.end(), separates);
    }
    return words;
}

} // namespace

Language languageOf(std::u32string_view text)
{
    if (std::ranges::any_of(text, isOtherLetter))
        return Language::Other;
    const LatinWords words = latinWords(text);
    const auto han = static_cast<std::size_t>(std::ranges::count_if(text, isHan));
    if (han > 0 && han >= words.all)
        return isSurelyChinese(text) ? Language::Chinese : Language::Other;
    return words.areSurelyEnglish() ? Language::English : Language::Other;
}

bool isTraditional(std::u32string_view text)
{
    return std::ranges::any_of(text, [](char32_t c) { return simplifiedForms().contains(c); });
}

char32_t simplified(char32_t c)
{
    // Texts in simplified characters have these two as well, in other words.
    if (c == U'甚')
        return U'什';
    if (c == U'著')
        return U'着';
    const auto found = simplifiedForms().find(c);
    return found == simplifiedForms().end() ? c : found->second;
}

} // namespace tavrin::devcloud
