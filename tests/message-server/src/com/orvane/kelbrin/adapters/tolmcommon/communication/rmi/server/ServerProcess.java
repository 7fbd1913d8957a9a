package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.DesktopMessageClient;
import java.io.BufferedReader;
import java.io.IOException;
import java.net.URI;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.List;
import java.util.concurrent.TimeUnit;

/** The server as its users start it: the archive, in a process of its own. */
final class ServerProcess implements AutoCloseable {
    private static final String READY = "message server ready at ";

    private final Process process;
    private final BufferedReader output;
    private final BufferedReader errors;
    private URI url;

    private ServerProcess(List<String> arguments) throws IOException {
        List<String> command = new ArrayList<>(List.of(
                System.getProperty("java.home") + "/bin/java", "-jar", System.getProperty("telvar.message-server")));
        command.addAll(arguments);
        ProcessBuilder builder = new ProcessBuilder(command);
        builder.environment().remove("JAVA_TOOL_OPTIONS");  // the machine would tell of them among the errors
        process = builder.start();
        output = process.inputReader(StandardCharsets.UTF_8);
        errors = process.errorReader(StandardCharsets.UTF_8);
    }

    /** Starts it on any free port and waits until it is ready. */
    static ServerProcess start(String... arguments) throws IOException {
        return startOn(0, arguments);
    }

    static ServerProcess startOn(int port, String... arguments) throws IOException {
        List<String> all = new ArrayList<>(List.of("--port", Integer.toString(port)));
        all.addAll(List.of(arguments));
        ServerProcess server = new ServerProcess(all);
        String line = server.output.readLine();
        if (line == null || !line.startsWith(READY)) {
            String failure = server.errors.lines().toList().toString();
            server.close();
            throw new IOException("the server is not ready: " + line + " " + failure);
        }
        server.url = URI.create(line.substring(READY.length()).split(" ")[0]);
        return server;
    }

    /** What a run says that comes to its end by itself. */
    record End(int result, List<String> output, List<String> errors) {
    }

    static End run(String... arguments) throws IOException, InterruptedException {
        try (ServerProcess server = new ServerProcess(List.of(arguments))) {
            return server.end();
        }
    }

    URI url() {
        return url;
    }

    /** A client of the server; it trusts this certificate, or speaks plainly for null. */
    DesktopMessageClient connect(String certificate) throws Exception {
        DesktopMessageClient client = new DesktopMessageClient();
        client.setProviderUrl(url.toString());
        client.initialize(null, certificate);
        return client;
    }

    DesktopMessageClient connect() throws Exception {
        return connect(null);
    }

    /** Sends SIGTERM; by the handle, since the process object would close the streams as well. */
    End terminate() throws IOException, InterruptedException {
        process.toHandle().destroy();
        return end();
    }

    End interrupt() throws IOException, InterruptedException {
        new ProcessBuilder("kill", "-INT", Long.toString(process.pid())).inheritIO().start().waitFor();
        return end();
    }

    End closeInput() throws IOException, InterruptedException {
        endInput();
        return end();
    }

    void endInput() throws IOException {
        process.getOutputStream().close();
    }

    private End end() throws IOException, InterruptedException {
        List<String> said = output.lines().toList();
        List<String> complained = errors.lines().toList();
        return new End(process.waitFor(), said, complained);
    }

    /** For a test that failed before it stopped the server. */
    @Override
    public void close() {
        process.destroyForcibly();
        try {
            process.waitFor(1, TimeUnit.MINUTES);
        } catch (InterruptedException interruption) {
            Thread.currentThread().interrupt();
        }
    }
}
