package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import java.io.ByteArrayInputStream;
import java.net.Socket;
import java.security.GeneralSecurityException;
import java.security.cert.CertificateException;
import java.security.cert.CertificateFactory;
import java.security.cert.X509Certificate;
import java.util.Arrays;
import java.util.Base64;
import javax.net.ssl.SSLContext;
import javax.net.ssl.SSLEngine;
import javax.net.ssl.SSLSocketFactory;
import javax.net.ssl.TrustManager;
import javax.net.ssl.X509ExtendedTrustManager;

/**
 * The one certificate that a server must show, byte by byte. Neither an issuer nor the host's name counts beside it:
 * who has this certificate's key is the server, under whatever name it is reached.
 */
public final class CertificatePin {
    private static final String BEGIN = "-----BEGIN CERTIFICATE-----";
    private static final String END = "-----END CERTIFICATE-----";

    private final X509Certificate certificate;
    private final byte[] encoded;
    private final SSLSocketFactory sockets;

    private CertificatePin(X509Certificate certificate) throws GeneralSecurityException {
        this.certificate = certificate;
        encoded = certificate.getEncoded();
        SSLContext context = SSLContext.getInstance("TLS");
        context.init(null, new TrustManager[] {new PinnedTrust()}, null);
        sockets = context.getSocketFactory();
    }

    /**
     * @param text a certificate as PEM, or its bare Base64 text
     * @throws CertificateException if there is none in the text; the text itself is not quoted
     */
    public static CertificatePin parse(String text) throws CertificateException {
        try {
            byte[] bytes = Base64.getDecoder().decode(bare(text).replaceAll("\\s", ""));
            return new CertificatePin((X509Certificate) CertificateFactory.getInstance("X.509")
                    .generateCertificate(new ByteArrayInputStream(bytes)));
        } catch (IllegalArgumentException | GeneralSecurityException failure) {
            throw new CertificateException("the message server's certificate cannot be read", failure);
        }
    }

    private static String bare(String text) {
        int begin = text.indexOf(BEGIN);
        if (begin < 0) {
            return text;
        }
        int end = text.indexOf(END, begin);
        return text.substring(begin + BEGIN.length(), end < 0 ? text.length() : end);
    }

    /** To be asked before each connection: a TLS session that is taken up again does not show its certificate anew. */
    void checkValidity() throws CertificateException {
        certificate.checkValidity();
    }

    SSLSocketFactory sockets() {
        return sockets;
    }

    @Override
    public boolean equals(Object other) {
        return other instanceof CertificatePin && Arrays.equals(encoded, ((CertificatePin) other).encoded);
    }

    @Override
    public int hashCode() {
        return Arrays.hashCode(encoded);
    }

    /** Extended, because the runtime adds checks of its own to the plain kind. */
    private final class PinnedTrust extends X509ExtendedTrustManager {
        @Override
        public void checkServerTrusted(X509Certificate[] chain, String authType) throws CertificateException {
            if (chain == null || chain.length == 0 || !Arrays.equals(chain[0].getEncoded(), encoded)) {
                throw new CertificateException("the message server shows another certificate than the one given");
            }
        }

        @Override
        public void checkServerTrusted(X509Certificate[] chain, String authType, Socket socket)
                throws CertificateException {
            checkServerTrusted(chain, authType);
        }

        @Override
        public void checkServerTrusted(X509Certificate[] chain, String authType, SSLEngine engine)
                throws CertificateException {
            checkServerTrusted(chain, authType);
        }

        @Override
        public void checkClientTrusted(X509Certificate[] chain, String authType) throws CertificateException {
            throw new CertificateException("a client has no clients");
        }

        @Override
        public void checkClientTrusted(X509Certificate[] chain, String authType, Socket socket)
                throws CertificateException {
            checkClientTrusted(chain, authType);
        }

        @Override
        public void checkClientTrusted(X509Certificate[] chain, String authType, SSLEngine engine)
                throws CertificateException {
            checkClientTrusted(chain, authType);
        }

        @Override
        public X509Certificate[] getAcceptedIssuers() {
            return new X509Certificate[0];
        }
    }
}
