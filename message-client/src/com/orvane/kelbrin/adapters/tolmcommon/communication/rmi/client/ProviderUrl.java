package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import java.util.regex.Matcher;
import java.util.regex.Pattern;

/** Where a message server is registered: "rmi://host[:port][/name]". */
final class ProviderUrl {
    /** Not {@link java.net.URI}, which knows no host with an underscore; machines have such names. */
    private static final Pattern FORM = Pattern.compile(
            "rmi://(?<host>\\[[0-9A-Fa-f:.]+\\]|[^\\s/:?#@\\[\\]]+)(:(?<port>[0-9]{1,5}))?(/(?<name>[^\\s?#]*))?",
            Pattern.CASE_INSENSITIVE);
    private static final int HIGHEST_PORT = 65535;

    private final String host;
    private final int port;
    private final String name;

    private ProviderUrl(String host, int port, String name) {
        this.host = host;
        this.port = port;
        this.name = name;
    }

    /** @throws IllegalArgumentException if it is no such URL */
    static ProviderUrl parse(String url) {
        Matcher parts = FORM.matcher(url == null ? "" : url);
        if (!parts.matches()) {
            throw new IllegalArgumentException(
                    "the message server's URL must read rmi://host[:port][/name], but is " + url);
        }
        int port = parts.group("port") == null ? MessageServer.DEFAULT_PORT : Integer.parseInt(parts.group("port"));
        if (port < 1 || port > HIGHEST_PORT) {
            throw new IllegalArgumentException(
                    "the message server's port must be from 1 to " + HIGHEST_PORT + ", but the URL is " + url);
        }
        String name = parts.group("name");
        return new ProviderUrl(withoutBrackets(parts.group("host")), port,
                name == null || name.isEmpty() ? MessageServer.REGISTRY_NAME : name);
    }

    private static String withoutBrackets(String host) {
        return host.startsWith("[") ? host.substring(1, host.length() - 1) : host;
    }

    String host() {
        return host;
    }

    int port() {
        return port;
    }

    String name() {
        return name;
    }

    @Override
    public String toString() {
        return "rmi://" + (host.contains(":") ? "[" + host + "]" : host) + ":" + port + "/" + name;
    }
}
