#include "Core/SecurityMail/SecretMailWords.h"

namespace tarnwell {

namespace {

using namespace mail_role;  // the table uses little else

constexpr SecretMailWords rows[] = {
    // Words of mail that hands over a code.
    {handOver,
     "enter|entering|input|type|submit|paste|copy|use|using|provide|following|below|here is|here's|"
     "is your|find your|typing|key in|key this in|put in|answer with|match the number"},
    // Words of mail about signing in or confirming.
    {signIn | signsIn,
     "sign in|sign into|signing in|log in|log into|log on|logging in|sign on|log on|logging on"},
    {signIn,
     "verification|confirming|authenticate|authenticating|authentication|authenticator|authorize|"
     "authorise|authorizing|approve|identity|forgot your password|forgotten your password|passkey|"
     "two factor|two step|2 step|mfa|multi factor|sign up|signing up|registering|registration|"
     "logged in|logged into|signed in|signed into|new device|new browser|it's you|3d secure|access your "
     "account|prove"},
    // Words about codes and links of this kind: they expire, were asked for, or are for one person.
    {shortLived | linkTerms,
     "link expires|link will expire|link is valid|link is only valid|link can only|link can be used|"
     "link will be valid|link works|link will work|link will only|link remains valid|link is good|"
     "button will expire|button expires|button is valid|requested to log|requested to sign|asked to log|"
     "asked to sign|works once|only works once|work once|works one time|work one time|single time|"
     "logs you in|log you in|signs you in|sign you in|logged in as you|"
     "link will no longer|only be used once|used only once|can be used once|used one time|one time use|"
     "did not request|didn't request|did not make this request|didn't make this request|did not ask|"
     "didn't ask|haven't requested|have not requested|did not initiate|didn't initiate|did not try|"
     "didn't try|did not attempt|didn't attempt|weren't trying|were not trying|not you who"},
    {shortLived,
     "you requested|you have requested|you've requested|you just requested|you asked|"
     "you recently requested|was requested|were requested|has been requested|have been requested|"
     "requested for your account|request was made|received a request|got a request|a request to|"
     "a request for|your request to|expire|expiring|expires in|valid for|valid until|good for|minutes|"
     "only once|short lived|wasn't you|was not you|not you"},
    {secret,
     "not share|don't share|never share|don't forward|not forward|pass it on|pass this on|do not pass|don't "
     "pass|do not give|don't give|"
     "do not disclose|not reveal|keep it secret|keep this code"},
    {mistake,
     "ignore|disregard|by mistake|in error|did not create|didn't create|did not sign up|didn't sign up|"
     "did not register|didn't register|have not registered|no further action|do nothing|not expecting"},
    // Words of other mail that has codes.
    {elsewhere,
     "parcel|package|locker|courier|driver|pick up|picking up|collect your|collection point|delivery|"
     "delivered|shipped|shipping|store|counter|till|door|gate|entrance|car park|parking|garage|barrier|"
     "lockbox|key safe|keypad|check out|checkout|checking in|hotel|apartment|guest|meeting|webinar|"
     "conference call|dial|dial in|sale|savings|deal|discount|% "
     "off|voucher|coupon|redeem|gift|promo|venue|event|"
     "admission|wi fi|wifi|error|exception|crash|stack|exit|http status|compiler|failed with|returned|"
     "subtotal|total|receipt|terminal|visa|mastercard"},
    // Actions and their objects.
    {resets,
     "reset|resetting|change|changing|choose|choosing|set|setting|set up|setting up|create|creating|"
     "recover|recovering"},
    {confirms | signIn, "confirm|verify|verifying|activate|activating|validate|validating|unlock|unlocking"},
    {confirms,
     "confirming|recover|recovering|reactivate|recover access|restore|restoring|regain|unblock|authenticate"},
    {completes, "complete|completing|finish|finishing|finalize|finalise"},
    {password | signIn, "password"},
    {password, "passphrase|new password|pass word"},
    {account,
     "account|email|e mail|identity|mailbox|your address|the address|this address|log in|it's you|it is "
     "you|this is you|it was you"},
    {registration, "registration|registering|sign up|signing up"},
    {matter,
     "order|reservation|appointment|attendance|payment|purchase|by email|by e mail|by phone|by reply|by "
     "post|via|with|account details|"
     "account information|account settings|account manager|account balance|account team|"
     "email preferences|email settings|email address book|shipping|details|availability|participation|"
     "seat|receipt "
     "of|reply|subscription|membership|replying|responding|interview|slot|spot|place|meeting|visit|rsvp|date|"
     "delivery|transaction|donation|quote|invoice|document|trip|stay|session|class|event|contact "
     "details|plan|settings|preferences|delivery address|billing address|home address"},
    // Names of links, and words around links.
    {linkName,
     "magic link|magic url|sign in link|sign in url|sign in email|log in link|log in url|reset link|"
     "reset url|password link|password reset|password recovery|verification link|verification url|"
     "verify link|confirmation link|confirmation url|activation link|activation url|unlock link|"
     "recovery link|one time link|one time url|one time log in|single use link|"
     "link to sign in|link to log in|link to log into|link to access your account|link to reset|"
     "link to change your password|link to set|link to create a|link to choose a|link to confirm|"
     "link to verify|link to activate|link to complete|link to finish|link to unlock|email verification|"
     "email confirmation|email validation|email address verification|email address confirmation|"
     "account activation|account verification|account confirmation|account recovery|account validation|"
     "set password|reset password|choose a new password|create a new password|set a new password|"
     "pick a new password|pick a password|make a new password|want a new password|new password requested|"
     "requested a new password|restore access|restore my access|restore your access|regain access|"
     "unlock it|this is my email|yes, this is my email|yes, this is me|this is my address|it's me|yes it's "
     "me|yes, it's me|that's me|yes, that was me|"
     "that was me|set up your account|finish setting up your account|finish signing in|complete your sign in|"
     "complete your log in|sign me in|log me in"},
    {linkSubject,
     "forgot password|forgot your password|forgotten password|forgotten your password|lost password|"
     "lost your password|password help"},
    {advice,
     "recommend|recommended|suggest|urge|advise|consider|should change|should reset|you can change|not you|"
     "wasn't you|don't recognise|don't recognize|do not recognise|do not recognize|not recognised|"
     "not recognized|suspicious|unauthorized|unauthorised|compromised|remember to|make sure to|be sure to|"
     "did not make this change|didn't make this change|did not change|didn't change"},
    {press,
     "click|clicking|tap|tapping|press|pressing|button|link|url|http|https|www|follow|following|visit|"
     "open|copy and paste|copy|paste|browser|go to"},
    {done,
     "enabled|disabled|regenerated|re generated|turned on|turned off|has been|have been|was|were|is "
     "now|successful|successfully|completed|complete|changed"},
};

}  // namespace

std::span<const SecretMailWords> englishContextWords() { return rows; }

}  // namespace tarnwell
