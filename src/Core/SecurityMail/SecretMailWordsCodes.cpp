#include "Core/SecurityMail/SecretMailWords.h"

namespace tarnwell {

namespace {

using namespace mail_role;  // the table uses little else

constexpr SecretMailWords rows[] = {
    // Names of one-time codes.
    {codeName,
     "verification code|verify code|validation code|confirmation code|authentication code|"
     "authenticator code|login code|log in code|login pin|log in pin|log in passcode|log in token|"
     "sign in code|sign in pin|sign in passcode|sign on code|log on code|sign up code|signing code|"
     "security code|security pin|security passcode|security token|verification pin|verification number|"
     "verification passcode|verification token|confirmation pin|confirmation token|authentication pin|"
     "authentication token|authentication number|identification code|identity code|one time code|"
     "one time passcode|one time pass code|one time password|one time pin|one time pass|one time token|"
     "one time key|one time security|single use code|single use password|single use passcode|"
     "single use pin|temporary code|temporary pin|temporary passcode|temporary login|"
     "temporary log in|two factor code|two step code|2 factor code|2 step code|2fa code|mfa code|"
     "2sv code|recovery code|backup code|password reset code|reset code|reset pin|reset token|"
     "magic code|secret code|email code|sms code|guard code|dynamic code|dynamic password|passcode|otp|"
     "otac|totp|mtan|two step number|sign in number|log in number"},
    {codeName | password, "temporary password|initial password|your password is|new password is"},
    {signIn, "2fa"},
    // Words that may name a one-time code.
    {code,
     "code|pin|pin code|pin number|token|digits|digit number|security number|authorization "
     "number|authorisation number|account code|your key|access key|personal key"},
    {codeName, "pass code"},
    {code | handOver,
     "use this to|use it to|enter this|enter it|your code|your pin|your token|this code|this pin|code is|pin "
     "is|code to|code below|following code|"
     "following pin|following digits"},
    {codeName | handOver, "your passcode"},
    // Codes and numbers of other kinds.
    {other | elsewhere,
     "promo code|promotion code|promotional code|coupon code|discount code|voucher code|gift code|"
     "gift card|gift card code|redemption code|redeem code|offer code|referral code|reward code|"
     "tracking code|shipping code|pick up code|pick up pin|collection code|collection pin|"
     "delivery code|delivery pin|delivery password|parcel code|locker code|locker pin|return code|"
     "returns code|booking code|reservation code|ticket code|check in code|boarding code|door code|"
     "gate code|entry code|entrance code|building code|alarm code|lock code|lockbox code|key code|"
     "keypad code|parking code|room code|wi fi code|wi fi password|meeting code|"
     "conference code|participant code|exit code|error code|status code|response code|result code|"
     "reason code|http code|fault code|tracking number|shipment|consignment|booking number|"
     "booking reference|reservation number|meeting id|conference id|webinar id"},
    {other,
     "invite code|invitation code|friend code|creator code|partner code|affiliate code|order code|"
     "airport code|flight code|class code|course code|source code|code review|code base|code of conduct|"
     "code freeze|code quality|code change|code path|code style|code coverage|code sample|code snippet|"
     "code block|code owner|code search|qr code|bar code|zip code|postal code|post code|area code|"
     "country code|dialling code|dialing code|language code|currency code|dress code|tax code|vat code|"
     "sort code|swift code|bank code|branch code|product code|item code|article code|sku code|"
     "customer code|client code|vendor code|company code|project code|department code|cost code|"
     "colour code|color code|hex code|char code|byte code|machine code|morse code|vs code|no code|"
     "low code|approval code|card security code|case|case number|order|order id|order no|order number|"
     "order reference|invoice|invoice no|invoice number|receipt number|bill number|tracking|tracking id|"
     "confirmation number|ticket|ticket number|request id|request number|reference|reference number|"
     "reference id|ref|transaction id|transaction number|payment id|customer id|customer no|"
     "customer number|client number|user id|member id|member number|membership number|account id|"
     "account no|policy number|contract number|serial number|model|model number|part number|item number|"
     "version|build|release|issue|revision|phone|phone number|telephone|tel|fax|"
     "call|call us|call us at|call us on|ext|extension|hotline|ending|ending in|ending with|card number|"
     "card|iban|flight|suite|room|building|po box|p.o. box|port|line|copyright|usd|eur|gbp|jpy|"
     "since"},
    {other | elsewhere,
     "bug|pull request|commit|ticket id|support ticket|case number|case id|support request|"
     "support case"},
    {other, "license key|licence key|product key|activation key|serial key"},
    // Offers to sign in for something that is not a secret.
    {other,
     "log in to view|sign in to view|log in to see|sign in to see|log in to manage|sign in to manage|"
     "log in to track|sign in to track|log in to reply|sign in to reply|log in to download|"
     "sign in to download|log in to respond|sign in to respond|request a password reset|"
     "request a new password"},
    {other | matter, "receipt|account number"},
    {other | elsewhere | matter, "booking|reservation"},
};

}  // namespace

std::span<const SecretMailWords> englishCodeWords() { return rows; }

}  // namespace tarnwell
