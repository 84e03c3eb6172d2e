#include "update_fixture.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

namespace corvandi {
namespace {

using namespace std::chrono_literals;
using namespace testing;
using Kind = UpdateFailure::Kind;

/// A certificate that is its own authority, made for one test.
class OwnCertificate {
public:
    /// For these names, such as "IP:127.0.0.1".
    explicit OwnCertificate(const QString& names)
    {
        const QStringList arguments = {QStringLiteral("req"),
                                       QStringLiteral("-x509"),
                                       QStringLiteral("-newkey"),
                                       QStringLiteral("ec"),
                                       QStringLiteral("-pkeyopt"),
                                       QStringLiteral("ec_paramgen_curve:P-256"),
                                       QStringLiteral("-nodes"),
                                       QStringLiteral("-subj"),
                                       QStringLiteral("/CN=test"),
                                       QStringLiteral("-addext"),
                                       QStringLiteral("subjectAltName=") + names,
                                       QStringLiteral("-days"),
                                       QStringLiteral("2"),
                                       QStringLiteral("-keyout"),
                                       folder_.filePath(QStringLiteral("key.pem")),
                                       QStringLiteral("-out"),
                                       folder_.filePath(QStringLiteral("certificate.pem"))};
        if (QProcess::execute(QStringLiteral("openssl"), arguments) != 0)
            ADD_FAILURE() << "openssl made no certificate";
    }
    [[nodiscard]] QSslCertificate certificate() const
    {
        return QSslCertificate::fromPath(folder_.filePath(QStringLiteral("certificate.pem"))).value(0);
    }
    [[nodiscard]] QSslConfiguration server() const
    {
        QFile file(folder_.filePath(QStringLiteral("key.pem")));
        if (!file.open(QIODevice::ReadOnly))
            ADD_FAILURE() << "there is no key";
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.setLocalCertificate(certificate());
        configuration.setPrivateKey(QSslKey(&file, QSsl::Ec));
        return configuration;
    }
    /// Makes this program's connections trust it, as if the system did.
    void trust() const
    {
        QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
        configuration.addCaCertificate(certificate());
        QSslConfiguration::setDefaultConfiguration(configuration);
    }

private:
    QTemporaryDir folder_;
};

class UpdateHttpsTest : public UpdateTest {
protected:
    ~UpdateHttpsTest() override { QSslConfiguration::setDefaultConfiguration(former_); }

    void serveSecurely(HttpServer& secure)
    {
        feed = secure.url(QStringLiteral("/feed"));
        secure.serve(QStringLiteral("/feed"), signer.feed(manifest));
    }

private:
    QSslConfiguration former_ = QSslConfiguration::defaultConfiguration();
};

TEST_F(UpdateHttpsTest, ATrustedCertificateIsAccepted)
{
    const OwnCertificate own(QStringLiteral("IP:127.0.0.1"));
    own.trust();
    HttpServer secure(own.server());
    serveSecurely(secure);

    EXPECT_TRUE(feedIsGood());
}

TEST_F(UpdateHttpsTest, ASelfSignedCertificateIsRefused)
{
    const OwnCertificate own(QStringLiteral("IP:127.0.0.1"));
    HttpServer secure(own.server());
    serveSecurely(secure);

    EXPECT_EQ(feedFailure().kind, Kind::insecure);
    EXPECT_TRUE(secure.requests().empty());
}

TEST_F(UpdateHttpsTest, ACertificateForAnotherNameIsRefused)
{
    const OwnCertificate own(QStringLiteral("DNS:updates.example"));
    own.trust();
    HttpServer secure(own.server());
    serveSecurely(secure);

    EXPECT_EQ(feedFailure().kind, Kind::insecure);
    EXPECT_TRUE(secure.requests().empty());
}

TEST_F(UpdateHttpsTest, AServerWithoutEncryptionIsRefused)
{
    patience = {500ms, 5s};
    feed = server.url(QStringLiteral("/feed"));
    feed.setScheme(QStringLiteral("https"));
    const Kind kind = feedFailure().kind;
    EXPECT_TRUE(kind == Kind::insecure || kind == Kind::timedOut);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(UpdateHttpsTest, EncryptionIsNotLeftByARedirection)
{
    const OwnCertificate own(QStringLiteral("IP:127.0.0.1"));
    own.trust();
    HttpServer secure(own.server());
    serveRelease();
    feed = secure.url(QStringLiteral("/feed"));
    secure.redirect(QStringLiteral("/feed"), server.url(QStringLiteral("/feed")).toEncoded());

    EXPECT_EQ(feedFailure().kind, Kind::insecure);
    EXPECT_TRUE(server.requests().empty());
}

TEST_F(UpdateHttpsTest, ARedirectionMayLeadIntoEncryption)
{
    const OwnCertificate own(QStringLiteral("IP:127.0.0.1"));
    own.trust();
    HttpServer secure(own.server());
    serveSecurely(secure);
    feed = server.url(QStringLiteral("/feed"));
    server.redirect(QStringLiteral("/feed"), secure.url(QStringLiteral("/feed")).toEncoded());

    EXPECT_TRUE(feedIsGood());
}

} // namespace
} // namespace corvandi
