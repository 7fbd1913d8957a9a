package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.List;
import picocli.CommandLine.Command;
import picocli.CommandLine.Option;

/** What the command line says. */
@Command(
        name = "telvar-message-server",
        mixinStandardHelpOptions = true,
        versionProvider = ArchiveVersion.class,
        usageHelpWidth = 80,
        sortOptions = false,
        description = {
            "A message server for development, demos and tests. It asks nobody for a password, keeps nothing but the"
                    + " record that it is told to write, and writes tokens into that as they come.",
            ""
        })
final class ServerOptions {
    private static final int HIGHEST_PORT = 65535;

    @Option(names = "--host", paramLabel = "ADDRESS", defaultValue = "127.0.0.1",
            description = "the machine's own address to listen on, as clients call it (default: ${DEFAULT-VALUE})")
    String host;

    @Option(names = "--port", paramLabel = "N", defaultValue = "" + MessageServer.DEFAULT_PORT,
            description = "0: any free one, which the start-up line tells (default: ${DEFAULT-VALUE})")
    int port;

    @Option(names = "--name", paramLabel = "NAME", defaultValue = MessageServer.REGISTRY_NAME,
            description = "the name in the registry (default: ${DEFAULT-VALUE})")
    String name;

    @Option(names = "--tls", paramLabel = "KEYSTORE",
            description = "speak TLS, with the key of this store (PKCS12 or JKS, as keytool makes them)")
    Path keyStore;

    @Option(names = "--password", paramLabel = "TEXT", description = "the key store's password")
    String password;

    @Option(names = "--password-file", paramLabel = "FILE",
            description = "the same, as the first line of a file: other users of the machine can read command lines")
    Path passwordFile;

    @Option(names = "--record", paramLabel = "FILE",
            description = "append each call to this file, as a line of JSON with every value and its type; tokens too")
    Path record;

    @Option(names = "--answer", paramLabel = "METHOD[/N]=TEXT",
            description = {
                "what a method returns, at each call or at each N-th; @FILE stands for a file's text; once per method.",
                "A text for onStartup, onUserLogon; an action for onDataCollected, onExtendedDataCollected,"
                        + " onDesktopPoll, onActionPerformed. Without a rule: null"
            })
    List<String> answers = new ArrayList<>();

    @Option(names = "--fail", paramLabel = "METHOD[/N]=TEXT",
            description = "have the method throw an exception with this message, at each call or at each N-th")
    List<String> failures = new ArrayList<>();

    @Option(names = "--delay", paramLabel = "METHOD[/N]=MILLISECONDS",
            description = "have the method take this long, at each call or at each N-th")
    List<String> delays = new ArrayList<>();

    @Option(names = "--stop-with-stdin", description = "stop when the standard input ends, as Ctrl-C and SIGTERM do")
    boolean stopsWithStdin;

    /** What the types of the options leave open. */
    void check() throws BadOptionException {
        if (port < 0 || port > HIGHEST_PORT) {
            throw new BadOptionException("--port " + port + ": a port is a number from 0 to " + HIGHEST_PORT);
        }
        boolean hasPassword = password != null || passwordFile != null;
        if (keyStore == null && hasPassword) {
            throw new BadOptionException("a password without a key store; name the store with --tls");
        }
        if (keyStore != null && (password == null) == (passwordFile == null)) {
            throw new BadOptionException("--tls needs the store's password; give one of --password, --password-file");
        }
    }
}
