#include "recorder/clients/HttpAccess.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

#include <algorithm>

namespace recorder
{

namespace
{

constexpr qint64 NonceLife = 5 * 60 * 1000;
constexpr char Realm[] = "recorder";

using Parameters = QHash<QByteArray, QByteArray>;

QByteArray md5(const QByteArray &text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Md5).toHex();
}

QByteArray takeQuoted(const QByteArray &text, qsizetype &at)
{
    QByteArray value;
    for (++at; at < text.size() && text[at] != '"'; ++at) {
        if (text[at] == '\\' && at + 1 < text.size())
            ++at;
        value += text[at];
    }
    return value;
}

/// The value that begins at the position: a quoted text, or everything up to the comma.
QByteArray takeValue(const QByteArray &text, qsizetype &at)
{
    const qsizetype start = at;
    const bool isQuoted = at < text.size() && text[at] == '"';
    const QByteArray quoted = isQuoted ? takeQuoted(text, at) : QByteArray();
    const qsizetype comma = text.indexOf(',', at);
    const qsizetype end = comma < 0 ? text.size() : comma;
    at = end + 1;
    return isQuoted ? quoted : text.sliced(start, end - start).trimmed();
}

Parameters parametersOf(const QByteArray &text)
{
    Parameters parameters;
    for (qsizetype at = 0; at < text.size();) {
        const qsizetype equals = text.indexOf('=', at);
        if (equals < 0)
            break;
        const QByteArray name = text.sliced(at, equals - at).trimmed().toLower();
        at = equals + 1;
        parameters.insert(name, takeValue(text, at));
    }
    return parameters;
}

QByteArray expectedResponse(const Parameters &sent, const QByteArray &method, const QByteArray &name,
                            const QByteArray &password)
{
    const QByteArray user = md5(name + ':' + Realm + ':' + password);
    const QByteArray request = md5(method + ':' + sent.value("uri"));
    return md5(user + ':' + sent.value("nonce") + ':' + sent.value("nc") + ':' + sent.value("cnonce") +
               ":auth:" + request);
}

std::optional<Account> basicAccount(const QByteArray &credentials, const QList<Account> &accounts)
{
    const QByteArray pair = QByteArray::fromBase64(credentials);
    const qsizetype colon = pair.indexOf(':');
    return colon < 0 ? std::nullopt : findAccount(accounts, pair.left(colon), pair.mid(colon + 1));
}

} // namespace

HttpAccess::Verdict HttpAccess::check(const HttpRequest &request, const QList<Account> &accounts)
{
    const QByteArray authorization = request.fields.value("authorization");
    const qsizetype blank = authorization.indexOf(' ');
    const QByteArray scheme = authorization.left(std::max<qsizetype>(0, blank)).toLower();
    const QByteArray credentials = authorization.mid(blank + 1).trimmed();
    if (scheme == "basic" && (m_schemes & Basic))
        return {basicAccount(credentials, accounts)};
    if (scheme == "digest" && (m_schemes & Digest))
        return checkDigest(credentials, request, accounts);
    return {};
}

HttpAccess::Verdict HttpAccess::checkDigest(const QByteArray &credentials, const HttpRequest &request,
                                            const QList<Account> &accounts)
{
    const Parameters sent = parametersOf(credentials);
    bool isCount = false;
    const quint32 count = sent.value("nc").toUInt(&isCount, 16);
    const bool isUsable = isCount && sent.value("realm") == Realm && sent.value("uri") == request.target &&
                          sent.value("qop") == "auth" && !sent.value("cnonce").isEmpty() &&
                          sent.value("algorithm", "MD5").toUpper() == "MD5";
    const auto account = std::find_if(accounts.begin(), accounts.end(), [&](const Account &candidate) {
        return !candidate.name.isEmpty() && candidate.name == sent.value("username");
    });
    if (!isUsable || account == accounts.end())
        return {};
    const QList<QByteArray> passwords = acceptedPasswords(*account);
    const bool isRight = std::any_of(passwords.begin(), passwords.end(), [&](const QByteArray &password) {
        return sent.value("response").toLower() ==
               expectedResponse(sent, request.method, account->name, password);
    });
    if (!isRight)
        return {};
    return useNonce(sent.value("nonce"), count) ? Verdict{*account} : Verdict{{}, true};
}

/// Each count of a nonce is accepted once, so a recorded request cannot be replayed.
bool HttpAccess::useNonce(const QByteArray &text, quint32 count)
{
    removeExpiredNonces();
    const auto nonce = std::find_if(m_nonces.begin(), m_nonces.end(),
                                    [&](const Nonce &candidate) { return candidate.text == text; });
    if (nonce == m_nonces.end() || count <= nonce->lastUse)
        return false;
    nonce->lastUse = count;
    return true;
}

void HttpAccess::removeExpiredNonces()
{
    const qint64 oldest = m_elapsed.elapsed() - NonceLife;
    m_nonces.removeIf([oldest](const Nonce &nonce) { return nonce.created < oldest; });
}

QList<QByteArray> HttpAccess::challenges(bool isStale)
{
    QList<QByteArray> values;
    if (m_schemes & Digest) {
        removeExpiredNonces();
        if (m_nonces.size() >= MaxNonces)
            m_nonces.removeFirst();
        quint32 numbers[4];
        QRandomGenerator::system()->fillRange(numbers);
        const QByteArray text = QByteArray(reinterpret_cast<const char *>(numbers), sizeof numbers).toHex();
        m_nonces.append({text, m_elapsed.elapsed()});
        values.append(QByteArray("Digest realm=\"") + Realm + "\", nonce=\"" + text +
                      "\", algorithm=MD5, qop=\"auth\"" + (isStale ? ", stale=true" : ""));
    }
    if (m_schemes & Basic)
        values.append(QByteArray("Basic realm=\"") + Realm + "\", charset=\"UTF-8\"");
    return values;
}

} // namespace recorder
