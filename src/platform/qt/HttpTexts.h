#pragma once

#include "base/LocalizedText.h"

/// Why a request brought no answer, as the user reads it.
namespace tavrin::texts {

inline constexpr LocalizedText httpTimedOut{
    u"请求超时。", u"請求逾時。", u"The request timed out."};
inline constexpr LocalizedText httpInsecure{u"无法与服务器建立安全连接：证书无效。",
    u"無法與伺服器建立安全連線：憑證無效。",
    u"No secure connection: the server's certificate is not valid."};
inline constexpr LocalizedText httpCancelled{
    u"请求已取消。", u"請求已取消。", u"The request was cancelled."};
inline constexpr LocalizedText httpTooLarge{
    u"服务器返回的数据过大。", u"伺服器傳回的資料過大。", u"The server's answer is too large."};
inline constexpr LocalizedText httpRefused{
    u"请求无效，未发送。", u"請求無效，未傳送。", u"The request is not valid and was not sent."};
inline constexpr LocalizedText httpRedirected{u"服务器要求转到其他地址，已拒绝。",
    u"伺服器要求轉到其他位址，已拒絕。",
    u"The server pointed to another address, which was refused."};
inline constexpr LocalizedText httpUnreachable{u"无法连接到服务器，请检查网络。",
    u"無法連線到伺服器，請檢查網路。", u"The server cannot be reached. Check the network."};

} // namespace tavrin::texts
