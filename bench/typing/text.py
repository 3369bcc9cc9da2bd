"""What is typed: a thousand characters, of which a keyboard has only some."""

PASSAGES = (
    "会议改到 Thursday 10:00 🎉，请把 report-v2.pdf 发给张小明。\"Fine\", she said — naïve café, ¿verdad? "
    "数字 345 与 £99，繁體字「測試」, emoji 👩‍💻🚀, {code: [1, 2]} & <b>tags</b>; 最后一句：明天见！ ",
    "春天的早晨，河边的柳树刚刚发芽，几只燕子掠过水面。The quick brown fox jumps over 13 lazy dogs! "
    "老师问：“你昨天为什么没有来上课？”学生回答说：“我感冒了，在家休息。” 😷🌿 #spring @home ~50% ",
    "Größe: 12 µm × 3 € = ½ Stück; smörgåsbord, façade, Ελλάδα, Москва, שלום 🌍🌏. "
    "軟體與韌體的更新須經過嚴格驗證，否則裝置可能無法啟動⚠️。請參閱第七章《安全手冊》。 ",
    "深圳、杭州和成都的团队共同完成了这个项目：预算三百二十万元，工期十八个月。Deadline → 2031-05-17 "
    "(UTC+8), owner: 欧阳静雯, reviewers: Zoë & João; status = \"green\" ✅; next_step: 发布候选版本… 🚢🎂 ",
    "窗外下着细雨，咖啡馆里弥漫着焦糖的香味，钢琴师弹起一首忧伤的曲子🎹☕️。He whispered: 'nobody "
    "expects it' — then left, quietly; 只留下半杯冷茶、一把旧伞与写满诗句的信纸。 $42.00 + 7/8 ^_^ |x| ",
)


def text(length=1000):
    """The first characters (code points) of the passages, over and over."""
    passages = "".join(PASSAGES)
    return (passages * (length // len(passages) + 1))[:length]


def wrong_characters(wanted, found):
    """How many characters have to be changed, taken out or put in to make one the other."""
    previous = list(range(len(found) + 1))
    for i, expected in enumerate(wanted, 1):
        current = [i]
        for j, actual in enumerate(found, 1):
            current.append(min(previous[j] + 1, current[-1] + 1,
                               previous[j - 1] + (expected != actual)))
        previous = current
    return previous[-1]
