#pragma once

/// Every message a client may show. The client's own cloud errors are Simplified Chinese in every
/// interface language, so these are too.
namespace tavrin::devcloud::messages {

inline constexpr auto bodyMissing = "请求内容为空。";
inline constexpr auto bodyNotJson = "请求内容不是有效的 JSON。";
inline constexpr auto bodyNotObject = "请求内容必须是 JSON 对象。";
inline constexpr auto bodyTooDeep = "请求内容嵌套过深。";
inline constexpr auto bodyTooLarge = "请求内容过大。";
inline constexpr auto bodyLengthMissing = "请求必须注明内容长度。";
inline constexpr auto headersInvalid = "请求头无效。";
inline constexpr auto contentTypeWrong = "请求内容必须是 application/json。";
inline constexpr auto pathUnknown = "没有这个接口。";
inline constexpr auto methodWrong = "该接口不支持这种请求方法。";
inline constexpr auto internal = "服务内部错误，请稍后再试。";

inline constexpr auto busy = "服务繁忙，请稍后再试。";

inline constexpr auto emailInvalid = "邮箱地址无效。";
inline constexpr auto passwordTooShort = "密码至少需要 10 个字符。";
inline constexpr auto credentialsWrong = "邮箱或密码不正确。";
inline constexpr auto tooManyAttempts = "尝试次数过多，请稍后再试。";
inline constexpr auto accessTokenInvalid = "登录已过期，请重新登录。";
inline constexpr auto refreshTokenInvalid = "登录凭证无效，请重新登录。";

/// The account panel looks for 已经注册 in this message and then offers sign-in.
inline constexpr auto emailRegistered = "该邮箱已经注册，请直接登录。";
inline constexpr auto inviteInvalid = "邀请码无效或已被使用。";
inline constexpr auto codeWrong = "验证码不正确。";
inline constexpr auto codeExpired = "验证码已过期，请重新获取。";
inline constexpr auto codeTriesExhausted = "验证码错误次数过多，请重新获取。";
inline constexpr auto registrationInvalid = "注册凭证无效或已过期，请重新开始。";
inline constexpr auto mailFailed = "验证码邮件发送失败，请稍后再试。";

inline constexpr auto transcriptEmpty = "没有可处理的文字。";
inline constexpr auto targetUnknown = "不支持这种目标语言。";
inline constexpr auto translationNeedsModel = "服务未配置语言模型，无法翻译。";
inline constexpr auto chatNeedsModel = "服务未配置语言模型，无法畅聊。";
inline constexpr auto tooManyAtOnce = "同时处理的请求过多，请稍后再试。";
inline constexpr auto modelFailed = "语言模型没有给出结果，请稍后再试。";

inline constexpr auto requestIdInvalid = "字段 requestId 的内容无效。";

} // namespace tavrin::devcloud::messages
