#pragma once

#include "base/LocalizedText.h"

/// Texts of the account page.
namespace tavrin::texts {

inline constexpr LocalizedText accountPage{u"账户", u"帳戶", u"Account"};
inline constexpr LocalizedText accountPageSubtitle{u"无需离开此面板即可登录或激活邀请码。",
    u"無需離開此面板即可登入或啟用邀請碼。",
    u"Sign in or activate an invite without leaving this panel."};
inline constexpr LocalizedText accountNotice{
    u"服务地址与模型连接由服务端统一管理，不会显示或保存在本机。",
    u"服務位址與模型連線由服務端統一管理，不會顯示或儲存在本機。",
    u"The service endpoint and model connection are managed centrally and are never shown or "
    u"stored on your Mac."};

// The status.
inline constexpr LocalizedText signInToUse{u"登录或注册后，才能使用 Tavrin 的输入与设置功能。",
    u"登入或註冊後，才能使用 Tavrin 的輸入與設定功能。",
    u"Sign in or register to use Tavrin input and settings."};
inline constexpr LocalizedText isSignedIn{u"✓ 登录状态正常", u"✓ 登入狀態正常", u"✓ Signed in"};

// The start step.
inline constexpr LocalizedText continueWithEmail{
    u"使用邮箱继续", u"使用電子郵件繼續", u"Continue with email"};
inline constexpr LocalizedText chooseSignInOrRegister{
    u"选择登录或注册。新用户需要邀请码和邮箱验证码。",
    u"選擇登入或註冊。新使用者需要邀請碼和電子郵件驗證碼。",
    u"Choose sign in or register. New users need an invite and email code."};
inline constexpr LocalizedText exampleEmail{
    u"name@example.com", u"name@example.com", u"name@example.com"};
inline constexpr LocalizedText emailName{u"邮箱", u"電子郵件", u"Email"};
inline constexpr LocalizedText modeName{u"登录或注册", u"登入或註冊", u"Sign in or register"};
inline constexpr LocalizedText signIn{u"登录", u"登入", u"Sign in"};
inline constexpr LocalizedText registerAccount{u"注册", u"註冊", u"Register"};
inline constexpr LocalizedText continueFlow{u"下一步", u"下一步", u"Continue"};

// The sign-in step.
inline constexpr LocalizedText welcomeBack{u"欢迎回来", u"歡迎回來", u"Welcome back"};
inline constexpr LocalizedText password{u"密码", u"密碼", u"Password"};
inline constexpr LocalizedText changeEmail{u"更换邮箱", u"更換電子郵件", u"Change email"};

// The invite step.
inline constexpr LocalizedText activateBetaAccount{
    u"激活内测账号", u"啟用內測帳戶", u"Activate beta account"};
inline constexpr LocalizedText willBeActivated{u"将通过邮箱验证码激活 %1。",
    u"將透過電子郵件驗證碼啟用 %1。", u"%1 will be activated with an email verification code."};
inline constexpr LocalizedText inviteCode{u"邀请码，例如 TAV-7K2M-Q9XD",
    u"邀請碼，例如 TAV-7K2M-Q9XD", u"Invite code, for example TAV-7K2M-Q9XD"};
inline constexpr LocalizedText sendCode{u"发送验证码", u"傳送驗證碼", u"Send code"};
inline constexpr LocalizedText back{u"返回", u"返回", u"Back"};

// The verification step.
inline constexpr LocalizedText enterCodeAndPassword{
    u"输入验证码并创建密码", u"輸入驗證碼並建立密碼", u"Enter code and create password"};
inline constexpr LocalizedText codeIsValidFor{u"验证码 10 分钟内有效。创建密码后将自动登录。",
    u"驗證碼 10 分鐘內有效。建立密碼後將自動登入。",
    u"The code is valid for 10 minutes. You will be signed in after creating a password."};
inline constexpr LocalizedText emailCode{
    u"6 位邮箱验证码", u"6 位電子郵件驗證碼", u"6-digit email code"};
inline constexpr LocalizedText newPassword{
    u"密码（至少 10 个字符）", u"密碼（至少 10 個字元）", u"Password (at least 10 characters)"};
inline constexpr LocalizedText confirmPassword{u"确认密码", u"確認密碼", u"Confirm password"};
inline constexpr LocalizedText activateAndSignIn{
    u"激活并登录", u"啟用並登入", u"Activate & sign in"};
inline constexpr LocalizedText startOver{u"重新开始", u"重新開始", u"Start over"};

// Signed in.
inline constexpr LocalizedText accountConnected{u"账号已连接", u"帳戶已連線", u"Account connected"};
inline constexpr LocalizedText signedInAccount{u"已登录账号", u"已登入帳戶", u"Signed-in account"};
inline constexpr LocalizedText sessionProvides{u"登录后可使用云端整理和匿名用量统计。",
    u"登入後可使用雲端整理和匿名用量統計。",
    u"Your session provides access to cloud editing and anonymous usage totals."};
inline constexpr LocalizedText signOut{u"退出登录", u"登出", u"Sign out"};

// Messages.
inline constexpr LocalizedText enterValidEmail{
    u"请输入有效的邮箱地址。", u"請輸入有效的電子郵件地址。", u"Enter a valid email address."};
inline constexpr LocalizedText signingIn{u"正在登录…", u"正在登入…", u"Signing in…"};
inline constexpr LocalizedText signedIn{u"登录成功。", u"登入成功。", u"Signed in."};
inline constexpr LocalizedText checkingInvite{u"正在校验邀请码并发送验证码…",
    u"正在驗證邀請碼並傳送驗證碼…", u"Checking invite and sending code…"};
inline constexpr LocalizedText passwordsDoNotMatch{
    u"两次输入的密码不一致。", u"兩次輸入的密碼不一致。", u"The passwords do not match."};
inline constexpr LocalizedText verifyingAndCreating{
    u"正在验证并创建账户…", u"正在驗證並建立帳戶…", u"Verifying and creating account…"};
inline constexpr LocalizedText accountActivated{
    u"账号已激活，已自动登录。", u"帳戶已啟用並自動登入。", u"Account activated and signed in."};

/// In the service's refusal to register an address that has an account already.
inline constexpr SimplifiedText alreadyRegistered{u"已经注册"};

} // namespace tavrin::texts
