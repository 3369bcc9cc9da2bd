#include "devcloud/polish/EnglishWords.h"

#include "devcloud/text/Ascii.h"

#include <algorithm>
#include <unordered_set>

namespace tavrin::devcloud {
namespace {

using Words = std::unordered_set<std::u32string_view>;

Words wordsOf(std::u32string_view list)
{
    Words words;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(U' '), list.size());
        words.insert(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return words;
}

constexpr std::u32string_view onlyEnglish =
    U"the this that these those there their theirs them they you your yours she what which who "
    U"whom whose when where why how and with from have has been were would could should might may "
    U"don't doesn't didn't isn't aren't wasn't weren't can't couldn't won't wouldn't shouldn't "
    U"haven't hasn't hadn't i'm i'll i've i'd it's he's she's we're we'll we've we'd they're "
    U"they'll they've you're you'll you've you'd that's there's what's who's where's let's think "
    U"thinks thought know knows knew need needs please because about after before again tomorrow "
    U"today yesterday every everyone everybody everything something someone somebody anything "
    U"anyone anybody nothing nobody never always people thank thanks hello very much many any than "
    U"then into only other others said says went yes monday tuesday wednesday thursday friday "
    U"saturday sunday enough like just our ours both each until while since without through though "
    U"although myself yourself neither either such own few little which less password";

/// Less common ones need not be here: they stay as they were said, as names do.
constexpr std::u32string_view common =
    U"a an i we he it me my him his her hers us its is am are was be do does did had can will "
    U"shall must not no nor or but if so as at by for in of off on onto out over to up down under "
    U"near between against along across around behind below above inside outside toward during "
    U"per here now soon later early late once twice still yet already ever often sometimes usually "
    U"maybe perhaps really quite too also even else instead almost together away back forward "
    U"home well better best bad worse worst good great nice fine okay ok sure sorry welcome right "
    U"wrong true false left first second third last next same different new old young big small "
    U"large long short high low full empty open closed easy hard ready busy happy sad tired sick "
    U"hungry cold hot warm cool dark light clean dirty cheap expensive free safe strong weak quick "
    U"slow fast quiet loud important possible impossible certain clear simple whole half one two "
    U"three four five six seven eight nine ten eleven twelve hundred thousand million all some "
    U"more "
    U"most none several lot lots part piece pair kind sort type number name word line page list "
    U"thing place time day week month year hour minute moment morning noon afternoon evening night "
    U"tonight weekend spring summer autumn winter january february april june july september "
    U"october "
    U"november december man woman men women child children boy girl kid baby friend family "
    U"mother father mom dad sister brother son daughter wife husband parent uncle aunt neighbour "
    U"neighbor guest boss team group member company office school class teacher student doctor "
    U"nurse customer client user person house room kitchen bathroom bedroom door window floor wall "
    U"table chair bed roof garden street road bridge city town village country world station "
    U"airport "
    U"hotel shop store market bank hospital church park beach river sea lake mountain hill tree "
    U"flower grass water rain snow wind sun moon star sky weather fire smoke air food breakfast "
    U"lunch "
    U"dinner meal bread butter milk cheese egg meat fish fruit apple orange pear soup rice salt "
    U"sugar "
    U"coffee tea wine beer bottle cup glass plate box bag car bus train plane ship boat taxi bike "
    U"ticket key keys phone computer screen keyboard button mouse file folder document letter "
    U"email "
    U"mail message note report paper book newspaper picture photo movie film song music game ball "
    U"party birthday holiday trip journey travel visit meeting call talk speech question answer "
    U"problem issue solution idea plan project task job work business deal price cost money dollar "
    U"euro pound budget bill invoice order parcel package account code program function variable "
    U"value error bug test build server network internet website site link version update change "
    U"result reason case fact story news history future past end beginning start middle side front "
    U"top bottom corner way direction point view example chance choice help hope love hate fear "
    U"wish dream truth lie secret joke law rule right side head hand arm leg foot feet eye ear "
    U"nose "
    U"mouth face hair heart body life death health pain blood dog cat horse bird shirt shoe coat "
    U"hat "
    U"dress color colour red green blue black white yellow brown grey gray accept act add agree "
    U"allow "
    U"appear apply argue arrive ask asked avoid become became begin began believe belong break "
    U"broke "
    U"broken bring brought buy bought care carry catch caught charge check choose chose close come "
    U"came complete consider contain continue cook copy count cover create cross cry cut decide "
    U"delete deliver depend describe die discuss drink drank drive drove drop eat ate enjoy enter "
    U"exist expect explain fail fall fell fallen feel felt fight fill find found finish fit fix "
    U"fly "
    U"flew follow forget forgot forgive get got gotten give gave given go goes gone grow grew "
    U"guess "
    U"happen hear heard hide hid hit hold held hurry hurt imagine include increase install invite "
    U"join jump keep kept kill kiss lay lead led learn leave lend let lift listen live load lock "
    U"log "
    U"look lose lost make made manage mark matter mean meant meet met mention mind miss move offer "
    U"own paint park pass pay paid pick play prefer prepare press print promise prove pull push "
    U"put "
    U"raise reach read realize receive recommend reduce remember remind remove repair repeat "
    U"replace "
    U"reply rest restart return ride rode ring rise run ran save saw say seem see seen sell sold "
    U"send "
    U"sent separate serve set shake share shine shoot shout show shut sign sing sit sat sleep "
    U"slept "
    U"smell smile sound speak spoke spend spent stand stay steal step stick stop study succeed "
    U"suggest "
    U"suppose swim take took taken taste teach taught tell told throw threw touch train translate "
    U"try "
    U"tried turn understand understood use used wait wake walk want wash waste watch wear wore win "
    U"won "
    U"wonder worry write wrote written yell able afraid alone angry asleep awake bright careful "
    U"crazy "
    U"dead deep dry fair famous fat final foreign funny glad heavy huge interested interesting "
    U"kind "
    U"known likely missing narrow natural nervous normal perfect personal poor pretty private "
    U"proud "
    U"public rare real rich rough round sharp shy single smooth soft special straight strange "
    U"stupid "
    U"sweet tall thick thin tight tiny ugly usual wet wide wild wise wonderful worth guys goodbye "
    U"bye "
    U"hi hey yeah dear regards sincerely truly faithfully congratulations actually especially "
    U"exactly "
    U"finally however therefore moreover furthermore meanwhile otherwise unless whether whatever "
    U"whenever wherever instead despite except till upon within according rather hardly nearly "
    U"recently suddenly probably definitely certainly completely absolutely immediately anyway "
    U"everywhere nowhere somewhere anywhere another itself himself herself themselves ourselves "
    U"budget team holiday library president government state power water history science art "
    U"culture "
    U"language english chinese speaker traffic fridge theatre theater coast café favourite "
    U"favorite "
    U"database loop branch release feature request response command terminal script source output "
    U"input log wall error file path port host domain address flag option window tab page process "
    U"done section setting "
    U"privacy chapter paragraph sentence lent built vitamin ah";

constexpr std::u32string_view foreign =
    U"der das und ist nicht ich ein eine einen mit für auf dem von zu sie wir ihr auch aber oder "
    U"wenn uhr dass sind haben bist immer noch denn nur schon dann habe hatte mir mich dir "
    U"dich "
    U"les une des du et est pas je tu il elle nous vous ils que qui dans pour avec ce cette "
    U"mais "
    U"ne una es se por como pero muy este esta mi lo gli di che sono questo ho "
    U"uma em não você ele ela mas meu het een niet ik zijn voor maar ook geen goed dat "
    U"och att det som är jag inte og jeg ikke jest nie się ang ng mga saya yang é è ein alle tutti "
    U"tous todos todas mucho bom";

constexpr std::u32string_view proseOpeners =
    U"the this that these those there their they you your she he we it my our his what why how who "
    U"please thank thanks hello hi hey dear yes okay because every everyone everything everybody "
    U"nobody nothing something someone somebody maybe today tomorrow yesterday can't don't doesn't "
    U"didn't won't wouldn't couldn't isn't aren't wasn't weren't haven't hasn't i i'm i'll i've "
    U"i'd "
    U"it's he's she's we're we'll we've we'd they're they'll they've you're you'll you've you'd "
    U"that's there's what's who's where's let's can could would should so well but also now yeah "
    U"no "
    U"our";

constexpr std::u32string_view verbsOfSpeaker =
    U"i am was had have will would can could should may might must shall do did don't didn't can't "
    U"couldn't won't wouldn't shouldn't haven't hadn't wasn't think thought know knew need needed "
    U"want "
    U"wanted like liked love loved hate hated hope hoped guess mean meant see saw said say told "
    U"tell "
    U"ask asked got get went go came come took take made make gave give found find felt feel look "
    U"looked used use work worked call called tried try left leave kept keep put read write wrote "
    U"hear "
    U"heard ran brought bring bought buy sent send live lived believe believed remember remembered "
    U"forgot forget understand understood agree agreed wonder wondered wish spent met lost paid "
    U"started "
    U"finished stopped stayed talked spoke ate drank slept woke played moved decided changed sat "
    U"stood "
    U"just really also already always never still usually often only even actually probably "
    U"definitely "
    U"certainly finally sometimes rather";
constexpr std::u32string_view commands =
    U"sudo apt apt-get cd ls rm cp mv mkdir rmdir chmod chown ssh scp curl wget grep sed awk cat "
    U"tar "
    U"cmake ninja systemctl journalctl echo export bash ping psql chroot xargs tail touch vim less";
constexpr std::u32string_view wordCommands = U"which man head find make more sort watch";
constexpr std::u32string_view finiteVerbs =
    U"makes wants goes comes thinks knows gets takes gives keeps says seems means leaves needs "
    U"works "
    U"lives reads writes tells brings buys eats sends starts stops opens closes costs loves likes "
    U"made wanted went came thought knew got took gave kept said told brought bought ate sent "
    U"wrote "
    U"asked began became lost paid met saw won heard found read moved started arrived returns "
    U"arrives";
constexpr std::u32string_view programs = U"git npm npx yarn pip pip3 apt apt-get docker "
                                         U"docker-compose kubectl cargo brew systemctl sudo "
                                         U"helm svn cmake python python3 node terraform";
constexpr std::u32string_view subcommands =
    U"push pull commit checkout clone rebase merge add status log diff install uninstall run build "
    U"test get apply exec start stop restart update upgrade compose up down remove init fetch "
    U"stash "
    U"show describe delete create search publish list switch branch tag reset";

bool isIn(const Words& words, std::u32string_view word)
{
    return words.contains(word);
}

/// Whether @p word is one of @p words with @p ending in place of @p original.
bool isForm(const Words& words, std::u32string_view word, std::u32string_view ending,
    std::u32string_view original = {})
{
    constexpr std::size_t shortestStem = 2;
    if (!word.ends_with(ending) || word.size() < ending.size() + shortestStem)
        return false;
    const std::u32string_view stem = word.substr(0, word.size() - ending.size());
    return original.empty() ? words.contains(stem)
                            : words.contains(std::u32string(stem) + std::u32string(original));
}

} // namespace

std::u32string folded(std::u32string_view word)
{
    std::u32string result(word);
    std::ranges::transform(result, result.begin(), [](char32_t c) -> char32_t {
        if (c == U'’')
            return U'\'';
        return isAsciiUpper(c) ? c + (U'a' - U'A') : c;
    });
    return result;
}

bool isOnlyEnglish(std::u32string_view word)
{
    static const Words words = wordsOf(onlyEnglish);
    return isIn(words, word) || isForm(words, word, U"'s");
}

bool isEnglish(std::u32string_view word)
{
    static const Words words = [] {
        Words both = wordsOf(common);
        both.merge(wordsOf(onlyEnglish));
        return both;
    }();
    return isIn(words, word) || isForm(words, word, U"'s") || isForm(words, word, U"s")
        || isForm(words, word, U"es") || isForm(words, word, U"ies", U"y")
        || isForm(words, word, U"ed") || isForm(words, word, U"d") || isForm(words, word, U"ing")
        || isForm(words, word, U"ing", U"e") || isForm(words, word, U"ly");
}

bool isForeign(std::u32string_view word)
{
    static const Words words = wordsOf(foreign);
    return isIn(words, word);
}

bool opensProse(std::u32string_view word)
{
    static const Words words = wordsOf(proseOpeners);
    return isIn(words, word);
}

bool isVerbOfSpeaker(std::u32string_view word)
{
    static const Words words = wordsOf(verbsOfSpeaker);
    return isIn(words, word);
}

bool isFiniteVerb(std::u32string_view word)
{
    static const Words words = wordsOf(finiteVerbs);
    return isIn(words, word);
}

bool mayBeCommand(std::u32string_view word)
{
    static const Words words = wordsOf(wordCommands);
    return isIn(words, word);
}

bool isCommand(std::u32string_view word)
{
    static const Words words = wordsOf(commands);
    return isIn(words, word);
}

bool areCommand(std::u32string_view program, std::u32string_view next)
{
    static const Words first = wordsOf(programs);
    static const Words second = wordsOf(subcommands);
    return isIn(first, program) && isIn(second, next);
}

} // namespace tavrin::devcloud
